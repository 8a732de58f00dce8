// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

/// A colour that the LED of a VNA port can have.
struct led_color_t
{
    /// What the instrument is sent, and what the user reads.
    const char *name;
    /// What the instrument reports.
    const char *reported;
    /// The CSS colour in which a panel shows the routes of such a port.
    const char *display;
    /// The resource that holds its icon.
    const char *icon;
};

/// All of them, in the order in which the user chooses.
inline constexpr std::array<led_color_t, 4> led_colors{{
    {"Cyan", "CYAN", "deepskyblue", ":/image/cyan.ico"},
    {"Blue", "BLUE", "blue", ":/image/blue.ico"},
    {"Red", "RED", "magenta", ":/image/red.ico"},
    {"Green", "GREEN", "greenyellow", ":/image/green.ico"},
}};

/// The colour that the instrument reports by exactly this text, or null for any other text.
const led_color_t *find_led_color(std::string_view reported);
