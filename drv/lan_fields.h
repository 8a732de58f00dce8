// SPDX-License-Identifier: MIT
#pragma once

#include "drv/command_table.h"
#include "drv/instrument_records.h"

#include <array>
#include <cstdint>

/// When a LAN setting is sent to the instrument.
enum class lan_sending_t : std::uint8_t { always, with_fixed_address, never };

/// One of the LAN settings: its place in the record and the commands that read and set it.
struct lan_field_t
{
    std::string lan_settings_t::*text;
    command_id query;
    command_id set;
    lan_sending_t sending;
};

/// All LAN settings, in the order in which they are read, and sent.
extern const std::array<lan_field_t, 6> lan_fields;
