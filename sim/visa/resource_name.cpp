// SPDX-License-Identifier: MIT
#include "sim/visa/resource_name.h"

#include "sim/text_util.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>
#include <vector>

namespace sim::visa {

namespace {

using fields_t = std::vector<std::string>;

constexpr std::array<std::string_view, 7> interface_names{"ASRL", "GPIB",  "GPIB-VXI", "PXI",
                                                          "VXI",  "TCPIP", "USB"};
constexpr std::array<std::string_view, 6> foreign_classes{"BACKPLANE", "INTFC",   "MEMACC",
                                                          "RAW",       "SERVANT", "SOCKET"};

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
    return text.substr(0, 2) == "0X" ? number_in(text.substr(2), 16) : number_in(text, 10);
}

// "A::B::C" in capitals as its fields.
fields_t fields_of(std::string_view text)
{
    const std::string capitals = to_upper(text);
    fields_t fields;
    std::size_t start = 0;
    for (std::size_t end = capitals.find("::"); end != std::string::npos;
         end = capitals.find("::", start)) {
        fields.push_back(capitals.substr(start, end - start));
        start = end + 2;
    }
    fields.push_back(capitals.substr(start));
    return fields;
}

bool is_serial_number(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), is_printable);
}

bool is_host(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
        return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
               character == '.' || character == '-';
    });
}

template <typename names_t>
bool is_one_of(const std::string &text, const names_t &names)
{
    return std::find(names.begin(), names.end(), text) != names.end();
}

// USB[board]::manufacturer ID::model code::serial number[::interface number]
std::optional<resource_name_t> read_usb(resource_name_t name, const fields_t &fields)
{
    if (fields.size() != 4 && fields.size() != 5)
        return std::nullopt;
    const auto manufacturer = read_id(fields[1]);
    const auto model = read_id(fields[2]);
    const auto usb_interface =
        fields.size() == 5 ? number_in(fields[4], 10) : std::optional<ViUInt16>(0);
    if (!manufacturer || !model || !usb_interface || !is_serial_number(fields[3]))
        return std::nullopt;
    name.bus = resource_name_t::bus_t::usb;
    name.manufacturer_id = *manufacturer;
    name.model_code = *model;
    name.serial_number = fields[3];
    name.key = "USB" + std::to_string(name.board) + "::" + std::to_string(*manufacturer) +
               "::" + std::to_string(*model) + "::" + fields[3] +
               "::" + std::to_string(*usb_interface);
    return name;
}

// TCPIP[board]::host[::LAN device name]
std::optional<resource_name_t> read_tcpip(resource_name_t name, const fields_t &fields)
{
    if ((fields.size() != 2 && fields.size() != 3) || !is_host(fields[1]) || fields.back().empty())
        return std::nullopt;
    const std::string device = fields.size() == 3 ? fields[2] : "INST0";
    name.bus = resource_name_t::bus_t::tcpip;
    name.host = fields[1];
    name.key = "TCPIP" + std::to_string(name.board) + "::" + fields[1] + "::" + device;
    return name;
}

} // namespace

std::optional<resource_name_t> read_resource_name(std::string_view text)
{
    fields_t fields = fields_of(text);
    const std::string first = fields.front();
    const std::size_t letters = std::min(first.find_first_of("0123456789"), first.size());
    const std::string interface_name = first.substr(0, letters);
    const auto board =
        letters == first.size() ? std::optional<ViUInt16>(0) : number_in(first.substr(letters), 10);
    if (!board || fields.size() < 2 || !is_one_of(interface_name, interface_names))
        return std::nullopt;

    resource_name_t name;
    name.board = *board;
    name.key = to_upper(text);
    if (is_one_of(fields.back(), foreign_classes))
        return name;
    if (fields.back() == "INSTR")
        fields.pop_back();
    if (interface_name == "USB")
        return read_usb(name, fields);
    if (interface_name == "TCPIP")
        return read_tcpip(name, fields);
    return name;
}

} // namespace sim::visa
