// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/command_table.h"

#include <vector>

namespace sim {

/// The common commands of IEEE 488.2 and the SCPI error queue, known to every instrument.
const std::vector<command_t> &common_commands();

} // namespace sim
