// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>

/// The instrument's commands by number, as its manual lists them. The numbers that are missing
/// name nothing.
enum class command_id : std::uint8_t {
    upgrade_id = 0,
    software_version = 1,
    model_name = 3,
    serial_number = 5,
    set_host_name = 15,
    host_name = 16,
    set_dhcp = 17,
    dhcp = 18,
    set_ip_address = 19,
    ip_address = 20,
    set_subnet_mask = 21,
    subnet_mask = 22,
    set_gateway = 23,
    gateway = 24,
    set_mac_address = 25,
    mac_address = 26,
    temperature = 27,
    add_route = 28,
    routes = 29,
    set_color = 30,
    get_color = 31,
    product_id = 32,
};

/// Command texts by id. A set command's argument, and the port of a colour query, follow the text
/// directly; nothing else is added.
using command_table_t = std::map<command_id, std::string>;

/// Empties the table and fills it with every command of the instrument.
void fill_command_table(command_table_t &table);
