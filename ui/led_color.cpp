// SPDX-License-Identifier: MIT
#include "ui/led_color.h"

#include <algorithm>

const led_color_t *find_led_color(std::string_view reported)
{
    const auto *const color =
        std::find_if(led_colors.begin(), led_colors.end(),
                     [reported](const led_color_t &row) { return row.reported == reported; });
    return color != led_colors.end() ? color : nullptr;
}
