// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

/// Integers as packages and ciphers hold them: the lowest byte first, on every machine.

template <typename integer_t>
integer_t read_little_endian(const std::uint8_t *bytes)
{
    std::make_unsigned_t<integer_t> value = 0;
    for (std::size_t place = sizeof value; place-- > 0;)
        value = (value << 8) | bytes[place];
    return static_cast<integer_t>(value);
}

template <typename integer_t>
void write_little_endian(integer_t integer, std::uint8_t *bytes)
{
    auto value = static_cast<std::make_unsigned_t<integer_t>>(integer);
    for (std::size_t place = 0; place < sizeof value; ++place, value >>= 8)
        bytes[place] = static_cast<std::uint8_t>(value);
}
