// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/fleet.h"

#include <CLI/App.hpp>

#include <string>

namespace sim::command {

/// Adds the option that names the fleet file.
void add_fleet_option(CLI::App &command, std::string &path);

/// Reads a fleet file, or takes the built-in fleet for an empty path. Throws fleet_error_t, which
/// names the file.
fleet_t read_fleet(const std::string &path);

} // namespace sim::command
