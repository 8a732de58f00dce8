// SPDX-License-Identifier: MIT
#include "visa_io/usb/usb_bus.h"

#include "visa_io/usb/uninterrupted.h"
#include "visa_io/usb/usb_link.h"
#include "visa_io/usb/usb_nodes.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

namespace visa_io {

std::vector<visa::object_attributes_t> find_usb_instruments()
{
    std::vector<visa::object_attributes_t> all;
    for (const usb_node_t &node : usb_nodes())
        all.push_back(node.attributes);
    return all;
}

ViStatus open_usb_instrument(const visa::resource_name_t &name, deadline_t /*deadline*/,
                             std::unique_ptr<device_link_t> &link,
                             visa::object_attributes_t &attributes)
{
    const std::vector<usb_node_t> nodes = usb_nodes();
    const auto node = std::find_if(nodes.begin(), nodes.end(), [&name](const usb_node_t &row) {
        return row.attributes.name.key == name.key;
    });
    if (node == nodes.end())
        return visa::error_resource_not_found;
    const int descriptor =
        uninterrupted([&node] { return ::open(node->path.c_str(), O_RDWR | O_CLOEXEC); });
    if (descriptor < 0)
        return errno == EACCES || errno == EPERM ? visa::error_no_permission
                                                 : visa::error_resource_not_found;
    link = std::make_unique<usb_link_t>(descriptor);
    attributes.kind = node->attributes.kind;
    attributes.name = node->attributes.name;
    attributes.name_text = node->attributes.name_text;
    attributes.instrument_maker = node->attributes.instrument_maker;
    attributes.instrument_model = node->attributes.instrument_model;
    return visa::success;
}

} // namespace visa_io
