// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/lan_config.h"
#include "sim/instrument/led_colors.h"

#include <array>
#include <string>
#include <vector>

namespace sim {

/// One instrument as it stands on the bench before it is switched on.
struct instrument_config_t
{
    /// "*IDN?" reply of an instrument of another maker; empty for a TMX.
    std::string foreign_identity;

    int product = 44; ///< a product id of the catalogue
    std::string serial;
    std::string version = "1.0.0";
    std::string temperature = "36.5";          ///< degrees Celsius
    std::array<int, 4> upgrade_id{0, 0, 0, 1}; ///< reply to "UPGRADE:ID?"
    std::vector<std::string> routes;           ///< as "ADD:ROUTe" takes them, "B14"
    led_colors_t colors;
    lan_config_t lan;
};

} // namespace sim
