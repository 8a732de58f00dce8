// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/instrument_state.h"
#include "sim/instrument/scpi_error.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// The outcome of one command or query.
struct command_result_t
{
    scpi_error_t error = scpi_error_t::none;
    std::optional<std::string> reply;
};

inline command_result_t done()
{
    return {};
}

inline command_result_t answer(std::string text)
{
    return {scpi_error_t::none, std::move(text)};
}

inline command_result_t outcome(scpi_error_t error)
{
    return {error, std::nullopt};
}

using arguments_t = std::vector<std::string_view>;

/// One row of the instrument's command table.
struct command_t
{
    std::string_view pattern; ///< spelling as in the manual, see header_matches()
    std::uint8_t modes;       ///< instrument_mode_t bits in which the command is known
    std::size_t fewest_arguments;
    std::size_t most_arguments;
    command_result_t (*run)(instrument_state_t &state, const arguments_t &arguments);
};

/// One command whose argument is raw bytes up to the end of the message.
struct raw_command_t
{
    std::string_view pattern;
    command_result_t (*run)(instrument_state_t &state, std::string_view payload);
};

constexpr std::uint8_t in_modes(std::initializer_list<instrument_mode_t> modes)
{
    std::uint8_t bits = 0;
    for (const instrument_mode_t mode : modes)
        bits |= static_cast<std::uint8_t>(mode);
    return bits;
}

/// The row of the command that a TMX or a foreign instrument knows by this header in the
/// given mode, or null.
const command_t *find_command(std::string_view header, instrument_mode_t mode);

/// The raw command with this header, or null; TMX instruments know them in both modes.
const raw_command_t *find_raw_command(std::string_view header);

/// True for a text that begins with the header of any command, spelled exactly as in the manual.
bool begins_with_command(std::string_view text);

} // namespace sim
