// SPDX-License-Identifier: MIT
#include "tools/text_mode.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::uint8_t line_feed = 0x0A;
constexpr std::uint8_t carriage_return = 0x0D;
constexpr std::uint8_t control_z = 0x1A;

} // namespace

bool survives_text_mode(const std::uint8_t *bytes, std::size_t count)
{
    const std::uint8_t *const end = bytes + count;
    constexpr std::uint8_t line_end[] = {carriage_return, line_feed};
    return std::find(bytes, end, control_z) == end &&
           std::search(bytes, end, std::begin(line_end), std::end(line_end)) == end &&
           (count == 0 || bytes[count - 1] != carriage_return);
}
