// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/fleet.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace sim {

/// Why a fleet description cannot be used, in one line.
class fleet_error_t : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads a fleet description (the format is in docs/simulator.md). Throws fleet_error_t,
/// which names the place, for text that is not JSON, an unknown key or a bad value.
fleet_t parse_fleet(std::string_view text);

/// The same for a file. Throws fleet_error_t also when it cannot be read.
fleet_t read_fleet_file(const std::filesystem::path &path);

} // namespace sim
