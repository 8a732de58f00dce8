// SPDX-License-Identifier: MIT
#include "sim/instrument/text_util.h"

#include <algorithm>
#include <cstddef>

namespace sim {

namespace {

constexpr std::size_t most_digits = 9;

char upper(char character)
{
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
}

bool is_blank(char character)
{
    return static_cast<unsigned char>(character) <= 0x20;
}

} // namespace

std::string to_upper(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upper);
    return result;
}

bool equal_ignoring_case(std::string_view left, std::string_view right)
{
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](char one, char other) { return upper(one) == upper(other); });
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator)) {
        pieces.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    pieces.push_back(text);
    return pieces;
}

std::optional<int> decimal_number(std::string_view text)
{
    if (text.empty() || text.size() > most_digits)
        return std::nullopt;
    int number = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        number = number * 10 + (digit - '0');
    }
    return number;
}

bool is_printable(char character)
{
    return character >= 0x20 && character <= 0x7E;
}

} // namespace sim
