// SPDX-License-Identifier: MIT
#include "visa/resource_name.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <system_error>
#include <vector>

namespace visa {

namespace {

using fields_t = std::vector<std::string>;

struct interface_t
{
    std::string_view name;
    ViUInt16 type;
};

constexpr std::array<interface_t, 7> interfaces{{{"ASRL", interface_type_asrl},
                                                 {"GPIB", interface_type_gpib},
                                                 {"GPIB-VXI", interface_type_gpib_vxi},
                                                 {"PXI", interface_type_pxi},
                                                 {"VXI", interface_type_vxi},
                                                 {"TCPIP", interface_type_tcpip},
                                                 {"USB", interface_type_usb}}};
constexpr std::array<std::string_view, 7> classes{"BACKPLANE", "INSTR",   "INTFC", "MEMACC",
                                                  "RAW",       "SERVANT", "SOCKET"};
constexpr std::string_view default_device = "inst0";

std::string in_capitals(std::string text)
{
    for (char &character : text)
        if (character >= 'a' && character <= 'z')
            character = static_cast<char>(character - 'a' + 'A');
    return text;
}

std::optional<ViUInt16> number_in(std::string_view text, int base)
{
    ViUInt16 number = 0;
    const char *const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, base);
    if (text.empty() || result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return number;
}

std::optional<ViUInt16> read_id(std::string_view text)
{
    const bool is_hexadecimal = text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
    return is_hexadecimal ? number_in(text.substr(2), 16) : number_in(text, 10);
}

std::string id_text(ViUInt16 id)
{
    char text[8] = "";
    std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(id));
    return text;
}

// "A::B::C" as its fields.
fields_t fields_of(std::string_view text)
{
    fields_t fields;
    std::size_t start = 0;
    for (std::size_t end = text.find("::"); end != std::string_view::npos;
         end = text.find("::", start)) {
        fields.emplace_back(text.substr(start, end - start));
        start = end + 2;
    }
    fields.emplace_back(text.substr(start));
    return fields;
}

bool is_serial_number(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
        return character >= 0x20 && character < 0x7F;
    });
}

bool is_host(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
        return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
               (character >= 'a' && character <= 'z') || character == '.' || character == '-';
    });
}

// USB[board]::manufacturer ID::model code::serial number[::interface number]
bool read_usb(resource_name_t &name, const fields_t &fields)
{
    if (fields.size() != 4 && fields.size() != 5)
        return false;
    const auto manufacturer = read_id(fields[1]);
    const auto model = read_id(fields[2]);
    const auto number = fields.size() == 5 ? number_in(fields[4], 10) : std::optional<ViUInt16>(0);
    if (!manufacturer || !model || !number || !is_serial_number(fields[3]))
        return false;
    name.bus = resource_name_t::bus_t::usb;
    name.manufacturer_id = *manufacturer;
    name.model_code = *model;
    name.serial_number = fields[3];
    name.usb_interface = *number;
    name.canonical += "::" + id_text(*manufacturer) + "::" + id_text(*model) + "::" + fields[3] +
                      (*number == 0 ? "" : "::" + std::to_string(*number));
    return true;
}

// TCPIP[board]::host[::LAN device name]
bool read_tcpip(resource_name_t &name, const fields_t &fields)
{
    if ((fields.size() != 2 && fields.size() != 3) || !is_host(fields[1]) || fields.back().empty())
        return false;
    name.bus = resource_name_t::bus_t::tcpip;
    name.host = fields[1];
    name.device_name = fields.size() == 3 ? fields[2] : default_device;
    const bool is_default = in_capitals(name.device_name) == in_capitals(default_device.data());
    name.canonical += "::" + fields[1] + (is_default ? "" : "::" + name.device_name);
    return true;
}

// "USB0" or "USB"
bool read_interface(resource_name_t &name, const std::string &field)
{
    const std::size_t letters = std::min(field.find_first_of("0123456789"), field.size());
    const std::string capitals = in_capitals(field.substr(0, letters));
    const auto *const known =
        std::find_if(interfaces.begin(), interfaces.end(),
                     [&capitals](const interface_t &row) { return row.name == capitals; });
    const auto board =
        letters == field.size() ? std::optional<ViUInt16>(0) : number_in(field.substr(letters), 10);
    if (known == interfaces.end() || !board)
        return false;
    name.interface_type = known->type;
    name.board = *board;
    name.canonical = capitals + std::to_string(*board);
    return true;
}

bool read_instrument(resource_name_t &name, const fields_t &fields)
{
    if (name.interface_type == interface_type_usb)
        return read_usb(name, fields);
    if (name.interface_type == interface_type_tcpip)
        return read_tcpip(name, fields);
    for (std::size_t index = 1; index < fields.size(); ++index)
        name.canonical += "::" + fields[index];
    return true;
}

} // namespace

std::optional<resource_name_t> read_resource_name(std::string_view text)
{
    fields_t fields = fields_of(text);
    resource_name_t name;
    if (fields.size() < 2 || !read_interface(name, fields.front()))
        return std::nullopt;
    const std::string last = in_capitals(fields.back());
    const bool has_class = std::find(classes.begin(), classes.end(), last) != classes.end();
    name.resource_class = has_class ? last : "INSTR";
    if (has_class)
        fields.pop_back();
    if (name.resource_class != "INSTR")
        name.canonical = std::string(text);
    else if (!read_instrument(name, fields))
        return std::nullopt;
    else
        name.canonical += "::INSTR";
    name.key = in_capitals(name.canonical);
    return name;
}

} // namespace visa
