// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/instrument_config.h"

#include <chrono>
#include <string>
#include <vector>

namespace sim {

/// One instrument of a fleet with its places on the bus.
struct fleet_instrument_t
{
    instrument_config_t config;
    std::vector<std::string> resources;          ///< VISA resource names under which it is found
    std::chrono::milliseconds response_delay{0}; ///< from a query to its reply
};

/// The instruments on the bench, in the order in which a search finds them.
struct fleet_t
{
    std::vector<fleet_instrument_t> instruments;
    std::chrono::milliseconds default_timeout{2000}; ///< of a newly opened session
    std::chrono::milliseconds reboot_time{300};      ///< how long a reboot keeps off the bus
};

/// Two LAN and five USB instruments of the family, and a USB instrument of another maker
/// that is found first: the content of fleet.example.json.
fleet_t default_fleet();

} // namespace sim
