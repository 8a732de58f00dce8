// SPDX-License-Identifier: MIT
#include "sim/instrument/led_colors.h"

#include "sim/instrument/text_util.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::array<std::string_view, 4> color_names{"CYAN", "BLUE", "RED", "GREEN"};

std::optional<std::size_t> channel_index(std::string_view channel)
{
    const std::string letter = to_upper(channel);
    const std::size_t index = led_colors_t::channels.find(letter);
    if (letter.size() != 1 || index == std::string_view::npos)
        return std::nullopt;
    return index;
}

} // namespace

scpi_error_t led_colors_t::set(std::string_view channel, std::string_view color)
{
    const auto index = channel_index(channel);
    const auto *const name = std::find(color_names.begin(), color_names.end(), to_upper(color));
    if (!index || name == color_names.end())
        return scpi_error_t::illegal_parameter_value;
    color_of_channel.at(*index) = static_cast<std::size_t>(name - color_names.begin());
    return scpi_error_t::none;
}

std::optional<std::string> led_colors_t::color(std::string_view channel) const
{
    const auto index = channel_index(channel);
    if (!index)
        return std::nullopt;
    return std::string(color_names.at(color_of_channel.at(*index)));
}

} // namespace sim
