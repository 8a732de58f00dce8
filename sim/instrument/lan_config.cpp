// SPDX-License-Identifier: MIT
#include "sim/instrument/lan_config.h"

#include "sim/instrument/text_util.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace sim {

namespace {

constexpr std::size_t most_host_name_characters = 63;
constexpr std::size_t mac_octets = 6;

bool is_digit(char character)
{
    return character >= '0' && character <= '9';
}

bool is_hex_digit(char character)
{
    return is_digit(character) || (character >= 'A' && character <= 'F');
}

bool is_host_character(char character)
{
    return is_digit(character) || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

std::optional<std::uint32_t> read_ipv4(std::string_view text)
{
    const auto octets = split(text, '.');
    if (octets.size() != 4)
        return std::nullopt;
    std::uint32_t address = 0;
    for (const std::string_view octet : octets) {
        const auto value = octet.size() > 3 ? std::nullopt : decimal_number(octet);
        if (!value || *value > 255)
            return std::nullopt;
        address = (address << 8U) | static_cast<std::uint32_t>(*value);
    }
    return address;
}

std::string ipv4_text(std::uint32_t address)
{
    std::string text;
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        text.append(text.empty() ? "" : ".").append(std::to_string((address >> shift) & 0xFFU));
    return text;
}

bool is_host_address(std::uint32_t address)
{
    const std::uint32_t first_octet = address >> 24U;
    return first_octet >= 1 && first_octet <= 223;
}

bool is_mask(std::uint32_t mask)
{
    const std::uint32_t host_part = ~mask;
    return mask != 0 && (host_part & (host_part + 1)) == 0;
}

bool is_gateway(std::uint32_t address)
{
    return address == 0 || is_host_address(address);
}

scpi_error_t store_ipv4(std::string_view text, bool (*is_valid)(std::uint32_t), std::string &field)
{
    const auto address = read_ipv4(text);
    if (!address || !is_valid(*address))
        return scpi_error_t::illegal_parameter_value;
    field = ipv4_text(*address);
    return scpi_error_t::none;
}

} // namespace

lan_config_t::lan_config_t()
    : dhcp_on(true),
      host("TMX"),
      hardware_address("00:1E:C0:00:00:01"),
      fixed{"192.168.1.10", "255.255.255.0", "192.168.1.1"},
      leased{"192.168.1.150", "255.255.255.0", "192.168.1.1"}
{
}

scpi_error_t lan_config_t::set_dhcp(std::string_view flag)
{
    if (flag != "0" && flag != "1")
        return scpi_error_t::illegal_parameter_value;
    dhcp_on = flag == "1";
    return scpi_error_t::none;
}

scpi_error_t lan_config_t::set_host_name(std::string_view name)
{
    const bool valid =
        !name.empty() && name.size() <= most_host_name_characters &&
        is_host_character(name.front()) && is_host_character(name.back()) &&
        std::all_of(name.begin(), name.end(), [](char character) {
            return is_host_character(character) || character == '-' || character == '.';
        });
    if (!valid)
        return scpi_error_t::illegal_parameter_value;
    host = name;
    return scpi_error_t::none;
}

scpi_error_t lan_config_t::set_address(std::string_view address)
{
    return store_ipv4(address, is_host_address, fixed.address);
}

scpi_error_t lan_config_t::set_mask(std::string_view mask)
{
    return store_ipv4(mask, is_mask, fixed.mask);
}

scpi_error_t lan_config_t::set_gateway(std::string_view gateway)
{
    return store_ipv4(gateway, is_gateway, fixed.gateway);
}

scpi_error_t lan_config_t::set_mac(std::string_view mac)
{
    std::string text = to_upper(mac);
    std::replace(text.begin(), text.end(), '-', ':');
    const auto octets = split(text, ':');
    const bool valid =
        octets.size() == mac_octets &&
        std::all_of(octets.begin(), octets.end(), [](std::string_view octet) {
            return octet.size() == 2 && is_hex_digit(octet[0]) && is_hex_digit(octet[1]);
        });
    if (!valid)
        return scpi_error_t::illegal_parameter_value;
    hardware_address = text;
    return scpi_error_t::none;
}

scpi_error_t lan_config_t::set_lease(const ip_settings_t &lease)
{
    ip_settings_t checked;
    for (const auto error : {store_ipv4(lease.address, is_host_address, checked.address),
                             store_ipv4(lease.mask, is_mask, checked.mask),
                             store_ipv4(lease.gateway, is_gateway, checked.gateway)})
        if (error != scpi_error_t::none)
            return error;
    leased = checked;
    return scpi_error_t::none;
}

void lan_config_t::reset_to_factory()
{
    const lan_config_t delivered;
    dhcp_on = delivered.dhcp_on;
    host = delivered.host;
    fixed = delivered.fixed;
}

} // namespace sim
