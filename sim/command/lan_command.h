// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>

namespace sim::command {

/// Adds "lan", which serves the fleet's LAN instruments, each at its own address.
void add_lan_command(CLI::App &app);

} // namespace sim::command
