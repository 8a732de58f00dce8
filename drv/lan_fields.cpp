// SPDX-License-Identifier: MIT
#include "drv/lan_fields.h"

const std::array<lan_field_t, 6> lan_fields{{
    {&lan_settings_t::dhcp, command_id::dhcp, command_id::set_dhcp, lan_sending_t::always},
    {&lan_settings_t::ip_address, command_id::ip_address, command_id::set_ip_address,
     lan_sending_t::with_fixed_address},
    {&lan_settings_t::subnet_mask, command_id::subnet_mask, command_id::set_subnet_mask,
     lan_sending_t::with_fixed_address},
    {&lan_settings_t::gateway, command_id::gateway, command_id::set_gateway,
     lan_sending_t::with_fixed_address},
    {&lan_settings_t::host_name, command_id::host_name, command_id::set_host_name,
     lan_sending_t::always},
    {&lan_settings_t::mac_address, command_id::mac_address, command_id::set_mac_address,
     lan_sending_t::never},
}};
