// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>

namespace sim::command {

/// Adds "serial", which puts one instrument of the fleet behind a pseudo-terminal.
void add_serial_command(CLI::App &app);

} // namespace sim::command
