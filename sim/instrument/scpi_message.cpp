// SPDX-License-Identifier: MIT
#include "sim/instrument/scpi_message.h"

#include "sim/instrument/text_util.h"

#include <algorithm>
#include <cstddef>

namespace sim {

namespace {

bool is_message_character(char character)
{
    return is_printable(character) || character == '\t';
}

void read_arguments(std::string_view text, message_unit_t &unit)
{
    text = trimmed(text);
    if (text.empty())
        return;
    for (const std::string_view piece : split(text, ',')) {
        unit.arguments.push_back(trimmed(piece));
        if (unit.arguments.back().empty())
            unit.error = scpi_error_t::missing_parameter;
    }
}

} // namespace

scpi_message_t::scpi_message_t(std::string_view message)
    : rest(message), finished(trimmed(message).empty())
{
}

message_unit_t scpi_message_t::next()
{
    const std::size_t separator = rest.find(';');
    const std::string_view whole = rest.substr(0, separator);
    finished = separator == std::string_view::npos;
    rest.remove_prefix(finished ? rest.size() : separator + 1);

    message_unit_t unit;
    if (!std::all_of(whole.begin(), whole.end(), is_message_character)) {
        unit.error = scpi_error_t::invalid_character;
        return unit;
    }
    const std::string_view text = trimmed(whole);
    const std::string_view header = header_of(text);
    if (header.empty() || header == ":") {
        unit.error = scpi_error_t::syntax_error;
        return unit;
    }
    unit.header = full_header(header);
    read_arguments(text.substr(header.size()), unit);
    return unit;
}

std::string scpi_message_t::full_header(std::string_view header)
{
    if (header.front() == '*')
        return std::string(header);
    std::string full;
    if (header.front() == ':')
        full = header.substr(1);
    else
        full = path + std::string(header);
    const std::size_t last_colon = full.rfind(':');
    path = last_colon == std::string::npos ? std::string() : full.substr(0, last_colon + 1);
    return full;
}

std::string_view without_line_end(std::string_view message)
{
    if (!message.empty() && message.back() == '\n') {
        message.remove_suffix(1);
        if (!message.empty() && message.back() == '\r')
            message.remove_suffix(1);
    }
    return message;
}

std::string_view header_of(std::string_view unit)
{
    const auto *const end = std::find_if(unit.begin(), unit.end(), [](char character) {
        return static_cast<unsigned char>(character) <= 0x20;
    });
    return unit.substr(0, static_cast<std::size_t>(end - unit.begin()));
}

} // namespace sim
