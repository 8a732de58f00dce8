// SPDX-License-Identifier: MIT
#include "drv/command_table.h"

namespace {

struct command_row_t
{
    command_id id;
    const char *text;
};

constexpr command_row_t command_rows[] = {
    {command_id::upgrade_id, "UPGRADE:ID?"},
    {command_id::model_name, "SHOW:MNAMe?"},
    {command_id::serial_number, "SHOW:SERial?"},
    {command_id::software_version, "SHOW:SVERsion?"},
    {command_id::set_host_name, "SET:LAN:HOST:NAMe "},
    {command_id::host_name, "SHOW:LAN:HOST:NAMe?"},
    {command_id::set_dhcp, "SET:LAN:DHCP "},
    {command_id::dhcp, "SHOW:LAN:DHCP?"},
    {command_id::set_ip_address, "SET:LAN:IP "},
    {command_id::ip_address, "SHOW:LAN:IP?"},
    {command_id::set_subnet_mask, "SET:LAN:SNMask "},
    {command_id::subnet_mask, "SHOW:LAN:SNMask?"},
    {command_id::set_gateway, "SET:LAN:GW "},
    {command_id::gateway, "SHOW:LAN:GW?"},
    {command_id::set_mac_address, "SET:LAN:MAC:ADDRess "},
    {command_id::mac_address, "SHOW:LAN:MAC:ADDRess?"},
    {command_id::temperature, "SHOW:TEMPerature?"},
    {command_id::add_route, "ADD:ROUTe "},
    {command_id::routes, "ROUTes?"},
    {command_id::set_color, "SET:COLOR "},
    {command_id::get_color, "GET:COLOR? "},
    {command_id::product_id, "SHOW:PRODect:ID?"},
};

} // namespace

void fill_command_table(command_table_t &table)
{
    table.clear();
    for (const command_row_t &row : command_rows)
        table.emplace(row.id, row.text);
}
