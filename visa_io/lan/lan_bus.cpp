// SPDX-License-Identifier: MIT
#include "visa_io/lan/lan_bus.h"

#include "visa_io/lan/lan_link.h"
#include "visa_io/lan/name_lookup.h"

#include <arpa/inet.h>

#include <string>
#include <utility>

namespace visa_io {

namespace {

std::string dotted(in_addr address)
{
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &address, text, sizeof text);
    return text;
}

} // namespace

std::vector<visa::object_attributes_t> find_lan_instruments()
{
    return {};
}

ViStatus open_lan_instrument(const visa::resource_name_t &name, deadline_t deadline,
                             std::unique_ptr<device_link_t> &link,
                             visa::object_attributes_t &attributes)
{
    auto opened = std::make_unique<lan_link_t>(look_up(name.host, deadline), name.device_name);
    const ViStatus status = opened->open(deadline);
    if (status != visa::success)
        return status == visa::error_resource_locked ? status : visa::error_resource_not_found;
    attributes.kind = visa::object_attributes_t::kind_t::tcpip;
    attributes.name = name;
    attributes.name_text = name.canonical;
    attributes.address = dotted(opened->address());
    link = std::move(opened);
    return visa::success;
}

} // namespace visa_io
