// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/command_table.h"

#include <vector>

namespace sim {

/// The switch matrix's own commands: identity, LAN settings, temperature, routes, colours.
const std::vector<command_t> &device_commands();

} // namespace sim
