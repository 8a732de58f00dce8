// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Plain ASCII text helpers; independent of the locale.
namespace sim {

/// Letters a-z of the text as A-Z, everything else unchanged.
std::string to_upper(std::string_view text);

/// True when both texts are equal with letter case ignored.
bool equal_ignoring_case(std::string_view left, std::string_view right);

/// The text without blanks and control characters at both ends.
std::string_view trimmed(std::string_view text);

/// The pieces of the text between separators; always at least one, possibly empty.
std::vector<std::string_view> split(std::string_view text, char separator);

/// A text of 1 to 9 decimal digits as a number; nothing for any other text.
std::optional<int> decimal_number(std::string_view text);

/// True for the characters 0x20 to 0x7E.
bool is_printable(char character);

} // namespace sim
