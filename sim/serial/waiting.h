// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace sim::serial {

/// What ended a wait.
enum class wake_t : std::uint8_t {
    timeout,
    stop, ///< the program is to end
    line  ///< something has arrived on the line
};

constexpr int forever_ms = -1;
constexpr int no_line = -1;

/// Waits until one of the descriptors is readable, `stop` before `line`.
wake_t wait_for(int stop, int line, int timeout_ms);

} // namespace sim::serial
