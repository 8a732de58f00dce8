// SPDX-License-Identifier: MIT
#include "visa_io/usb/usb_bus.h"

#include "visa_io/usb/usb_link.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace visa_io {

namespace {

using std::filesystem::path;
using visa::object_attributes_t;

constexpr const char *driver_folder = "/sys/class/usbmisc";
constexpr const char *node_prefix = "usbtmc";

struct found_t
{
    object_attributes_t attributes;
    std::string node;
};

std::string line_of(const path &file)
{
    std::string line;
    std::ifstream in(file);
    std::getline(in, line);
    return line;
}

std::string upper_case(std::string hexadecimal)
{
    for (char &digit : hexadecimal)
        digit = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    return hexadecimal;
}

/// The VISA name of what has an interface's folder in the system's tree of devices.
std::string name_of(const path &interface)
{
    const path device = interface / "..";
    const auto number = std::strtoul(line_of(interface / "bInterfaceNumber").c_str(), nullptr, 16);
    return "USB0::0x" + upper_case(line_of(device / "idVendor")) + "::0x" +
           upper_case(line_of(device / "idProduct")) + "::" + line_of(device / "serial") +
           (number == 0 ? "" : "::" + std::to_string(number)) + "::INSTR";
}

/// Nothing for one that leaves meanwhile or has no name, for want of a serial number.
std::optional<found_t> instrument_at(const path &entry)
{
    std::error_code gone;
    const path interface = std::filesystem::canonical(entry, gone) / "../..";
    const auto name = visa::read_resource_name(name_of(interface));
    if (gone || !name || name->bus != visa::resource_name_t::bus_t::usb)
        return std::nullopt;
    found_t found;
    found.attributes.kind = object_attributes_t::kind_t::usb;
    found.attributes.name = *name;
    found.attributes.name_text = name->canonical;
    found.attributes.instrument_maker = line_of(interface / "../manufacturer");
    found.attributes.instrument_model = line_of(interface / "../product");
    found.node = "/dev/" + entry.filename().string();
    return found;
}

std::vector<found_t> search()
{
    std::vector<found_t> all;
    std::error_code error;
    std::filesystem::directory_iterator entry(driver_folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (entry->path().filename().string().rfind(node_prefix, 0) != 0)
            continue;
        if (auto found = instrument_at(entry->path()))
            all.push_back(std::move(*found));
    }
    std::sort(all.begin(), all.end(), [](const found_t &one, const found_t &other) {
        return one.attributes.name_text < other.attributes.name_text;
    });
    return all;
}

} // namespace

std::vector<object_attributes_t> find_usb_instruments()
{
    std::vector<object_attributes_t> attributes;
    for (found_t &found : search())
        attributes.push_back(std::move(found.attributes));
    return attributes;
}

ViStatus open_usb_instrument(const visa::resource_name_t &name, deadline_t /*deadline*/,
                             std::unique_ptr<device_link_t> &link, object_attributes_t &attributes)
{
    const auto all = search();
    const auto found = std::find_if(all.begin(), all.end(), [&name](const found_t &one) {
        return one.attributes.name.key == name.key;
    });
    if (found == all.end())
        return visa::error_resource_not_found;
    const int node = open(found->node.c_str(), O_RDWR | O_CLOEXEC);
    if (node < 0)
        return errno == EACCES || errno == EPERM ? visa::error_no_permission
                                                 : visa::error_resource_not_found;
    link = std::make_unique<usb_link_t>(node);
    attributes.kind = found->attributes.kind;
    attributes.name = found->attributes.name;
    attributes.name_text = found->attributes.name_text;
    attributes.instrument_maker = found->attributes.instrument_maker;
    attributes.instrument_model = found->attributes.instrument_model;
    return visa::success;
}

} // namespace visa_io
