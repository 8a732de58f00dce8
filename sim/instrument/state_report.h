// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/instrument_state.h"

#include <string>

namespace sim {

/// The state of an instrument as a JSON object in one line; the keys are described in
/// docs/simulator.md.
std::string state_report(const instrument_state_t &state);

} // namespace sim
