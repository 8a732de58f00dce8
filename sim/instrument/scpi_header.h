// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace sim {

/// Tells whether a received header is one of the accepted spellings of a command.
///
/// The pattern is written as in an instrument manual: "ADD:ROUTe", "SYSTem:ERRor[:NEXT]?".
/// Each mnemonic is accepted in its long form (the whole word) or its short form (the
/// capitals), in any letter case, and in nothing between (SCPI-99 volume 1, chapter 6.2).
/// Brackets hold an optional part; a query's pattern ends in "?". The header must not start
/// with a colon.
bool header_matches(std::string_view pattern, std::string_view header);

} // namespace sim
