// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/scpi_error.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// The colours of the port LEDs. The LED controller has the channels A to D on every
/// product, also on those with two VNA ports.
class led_colors_t
{
public:
    static constexpr std::string_view channels = "ABCD";

    /// Gives the channel a colour: "Cyan", "Blue", "Red" or "Green" in any letter case.
    /// -224 for another channel or colour, which changes nothing.
    scpi_error_t set(std::string_view channel, std::string_view color);

    /// The channel's colour in capitals; nothing for another channel.
    std::optional<std::string> color(std::string_view channel) const;

    /// The factory colours: A CYAN, B BLUE, C RED, D GREEN.
    void reset() { *this = led_colors_t(); }

private:
    std::array<std::size_t, 4> color_of_channel{0, 1, 2, 3};
};

} // namespace sim
