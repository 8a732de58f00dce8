// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/command_table.h"

#include <vector>

namespace sim {

/// Firmware transfer, factory provisioning and reboot: the commands with text arguments.
const std::vector<command_t> &upgrade_commands();

/// The commands that carry raw bytes: firmware blocks and device parameters.
const std::vector<raw_command_t> &raw_commands();

} // namespace sim
