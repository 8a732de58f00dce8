// SPDX-License-Identifier: MIT
#pragma once

namespace sim::command {

/// From now on SIGINT, SIGTERM and SIGHUP make the descriptor that this returns readable. Throws
/// std::system_error.
int catch_stop_signals();

} // namespace sim::command
