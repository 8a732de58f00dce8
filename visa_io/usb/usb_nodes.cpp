// SPDX-License-Identifier: MIT
#include "visa_io/usb/usb_nodes.h"

#include "visa/resource_name.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

namespace visa_io {

namespace {

namespace fs = std::filesystem;

constexpr const char *class_folder = "/sys/class/usbmisc";
constexpr std::string_view node_prefix = "usbtmc";

// The first line of an attribute file; empty when there is none.
std::string text_in(const fs::path &file)
{
    std::string text;
    std::getline(std::ifstream(file), text);
    return text;
}

std::optional<unsigned> hexadecimal_in(const fs::path &file)
{
    const std::string text = text_in(file);
    unsigned number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return result.ec == std::errc() ? std::optional(number) : std::nullopt;
}

std::optional<visa::resource_name_t> name_of(const fs::path &interface, const fs::path &device)
{
    const auto vendor = hexadecimal_in(device / "idVendor");
    const auto product = hexadecimal_in(device / "idProduct");
    const auto number = hexadecimal_in(interface / "bInterfaceNumber");
    const std::string serial = text_in(device / "serial");
    if (!vendor || !product || !number)
        return std::nullopt;
    char ids[40] = "";
    std::snprintf(ids, sizeof ids, "USB0::0x%04X::0x%04X::", *vendor, *product);
    return visa::read_resource_name(ids + serial + "::" + std::to_string(*number) + "::INSTR");
}

std::optional<usb_node_t> read_node(const fs::path &entry)
{
    std::error_code error;
    const fs::path real = fs::canonical(entry, error); // ...device/interface/usbmisc/usbtmc0
    const fs::path interface = real.parent_path().parent_path();
    const fs::path device = interface.parent_path();
    const auto name = error ? std::nullopt : name_of(interface, device);
    if (!name)
        return std::nullopt;
    usb_node_t node;
    node.path = "/dev/" + entry.filename().string();
    node.attributes.kind = visa::object_attributes_t::kind_t::usb;
    node.attributes.name = *name;
    node.attributes.name_text = name->canonical;
    node.attributes.instrument_maker = text_in(device / "manufacturer");
    node.attributes.instrument_model = text_in(device / "product");
    return node;
}

} // namespace

std::vector<usb_node_t> usb_nodes()
{
    std::vector<usb_node_t> nodes;
    std::error_code error;
    const fs::directory_iterator end;
    for (fs::directory_iterator entry(class_folder, error); !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().rfind(node_prefix, 0) != 0)
            continue;
        if (auto node = read_node(entry->path()))
            nodes.push_back(std::move(*node));
    }
    std::sort(nodes.begin(), nodes.end(), [](const usb_node_t &left, const usb_node_t &right) {
        return std::tie(left.attributes.name.key, left.path) <
               std::tie(right.attributes.name.key, right.path);
    });
    return nodes;
}

} // namespace visa_io
