// SPDX-License-Identifier: MIT
#include "sim/instrument/scpi_error.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace sim {

namespace {

using error_row_t = std::pair<scpi_error_t, std::string_view>;

constexpr std::array<error_row_t, 15> error_texts{{
    {scpi_error_t::none, "No error"},
    {scpi_error_t::invalid_character, "Invalid character"},
    {scpi_error_t::syntax_error, "Syntax error"},
    {scpi_error_t::parameter_not_allowed, "Parameter not allowed"},
    {scpi_error_t::missing_parameter, "Missing parameter"},
    {scpi_error_t::undefined_header, "Undefined header"},
    {scpi_error_t::invalid_block_data, "Invalid block data"},
    {scpi_error_t::execution_error, "Execution error"},
    {scpi_error_t::settings_conflict, "Settings conflict"},
    {scpi_error_t::data_out_of_range, "Data out of range"},
    {scpi_error_t::too_much_data, "Too much data"},
    {scpi_error_t::illegal_parameter_value, "Illegal parameter value"},
    {scpi_error_t::queue_overflow, "Queue overflow"},
    {scpi_error_t::query_interrupted, "Query INTERRUPTED"},
    {scpi_error_t::query_unterminated, "Query UNTERMINATED"},
}};

} // namespace

std::string_view error_text(scpi_error_t error)
{
    const auto *const row =
        std::find_if(error_texts.begin(), error_texts.end(),
                     [error](const error_row_t &candidate) { return candidate.first == error; });
    return row == error_texts.end() ? std::string_view{} : row->second;
}

bool is_command_error(scpi_error_t error)
{
    const int code = static_cast<int>(error);
    return code <= -100 && code >= -199;
}

} // namespace sim
