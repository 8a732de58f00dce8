// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace sim {

/// The errors the instruments report, numbered as in SCPI-99 volume 2, chapter 21.8.
enum class scpi_error_t : std::int16_t {
    none = 0,
    invalid_character = -101,
    syntax_error = -102,
    parameter_not_allowed = -108,
    missing_parameter = -109,
    undefined_header = -113,
    invalid_block_data = -161,
    execution_error = -200,
    settings_conflict = -221,
    data_out_of_range = -222,
    too_much_data = -223,
    illegal_parameter_value = -224,
    queue_overflow = -350,
    query_interrupted = -410,
    query_unterminated = -420,
};

/// The standard's text of an error, without quotes.
std::string_view error_text(scpi_error_t error);

/// True for the command errors, -100 to -199.
bool is_command_error(scpi_error_t error);

} // namespace sim
