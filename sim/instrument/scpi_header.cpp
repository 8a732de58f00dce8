// SPDX-License-Identifier: MIT
#include "sim/instrument/scpi_header.h"

#include "sim/instrument/text_util.h"

#include <cstddef>

namespace sim {

namespace {

bool is_lower(char character)
{
    return character >= 'a' && character <= 'z';
}

bool is_mnemonic_character(char character)
{
    return character != ':' && character != '?' && character != '[' && character != ']';
}

std::string_view leading_mnemonic(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && is_mnemonic_character(text[length]))
        ++length;
    return text.substr(0, length);
}

bool mnemonic_matches(std::string_view spelling, std::string_view text)
{
    std::size_t short_length = 0;
    while (short_length < spelling.size() && !is_lower(spelling[short_length]))
        ++short_length;
    return equal_ignoring_case(spelling, text) ||
           equal_ignoring_case(spelling.substr(0, short_length), text);
}

// Matches a pattern part without brackets at the start of the header and takes the matched
// characters off it.
bool take_part(std::string_view part, std::string_view &header)
{
    std::string_view rest = header;
    while (!part.empty()) {
        if (rest.empty())
            return false;
        if (!is_mnemonic_character(part.front())) {
            if (part.front() != rest.front())
                return false;
            part.remove_prefix(1);
            rest.remove_prefix(1);
            continue;
        }
        const std::string_view spelling = leading_mnemonic(part);
        const std::string_view text = leading_mnemonic(rest);
        if (!mnemonic_matches(spelling, text))
            return false;
        part.remove_prefix(spelling.size());
        rest.remove_prefix(text.size());
    }
    header = rest;
    return true;
}

} // namespace

bool header_matches(std::string_view pattern, std::string_view header)
{
    while (!pattern.empty()) {
        const bool optional = pattern.front() == '[';
        if (optional)
            pattern.remove_prefix(1);
        const std::string_view part = pattern.substr(0, pattern.find(optional ? ']' : '['));
        pattern.remove_prefix(part.size() + (optional ? 1 : 0));
        if (!take_part(part, header) && !optional)
            return false;
    }
    return header.empty();
}

} // namespace sim
