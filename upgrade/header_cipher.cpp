// SPDX-License-Identifier: MIT
#include "upgrade/header_cipher.h"

#include "upgrade/des_tables.h"
#include "upgrade/little_endian.h"

#include <algorithm>
#include <array>

namespace {

using namespace des_tables;

/// Up to 64 bits; the standard's bit 1 is the least significant. Read as little-endian words,
/// blocks and keys come out in the headers' bit numbering.
using bits_t = std::uint64_t;
using subkeys_t = std::array<bits_t, key_shifts.size()>;

constexpr std::size_t block_bytes = 8;
constexpr std::size_t key_bytes = 2 * block_bytes;
constexpr bits_t half_key_mask = (bits_t{1} << 28) - 1;
constexpr bits_t half_block_mask = 0xFFFFFFFF;

template <std::size_t size>
bits_t select_bits(const bit_table_t<size> &table, bits_t bits)
{
    bits_t selected = 0;
    for (std::size_t place = 0; place < size; ++place)
        selected |= ((bits >> (table[place] - 1)) & 1) << place;
    return selected;
}

/// Bit 1 is the lowest, so that the standard's left shift goes to the right here.
bits_t shift_half_key(bits_t half, unsigned count)
{
    return ((half >> count) | (half << (28 - count))) & half_key_mask;
}

subkeys_t schedule(const std::uint8_t *key)
{
    const bits_t chosen = select_bits(key_choice_1, read_little_endian<std::uint64_t>(key));
    bits_t c = chosen & half_key_mask;
    bits_t d = chosen >> 28;
    subkeys_t subkeys{};
    for (std::size_t round = 0; round < subkeys.size(); ++round) {
        c = shift_half_key(c, key_shifts[round]);
        d = shift_half_key(d, key_shifts[round]);
        subkeys[round] = select_bits(key_choice_2, c | (d << 28));
    }
    return subkeys;
}

/// The value of an S-box for six bits. Put in place as it is, its least significant bit comes
/// first.
bits_t substitute(const std::array<std::uint8_t, 64> &box, bits_t six)
{
    const bits_t row = 2 * (six & 1) + (six >> 5);
    const bits_t column =
        8 * ((six >> 1) & 1) + 4 * ((six >> 2) & 1) + 2 * ((six >> 3) & 1) + ((six >> 4) & 1);
    return box[static_cast<std::size_t>(16 * row + column)];
}

bits_t round_function(bits_t half, bits_t subkey)
{
    const bits_t mixed = select_bits(expansion, half) ^ subkey;
    bits_t substituted = 0;
    for (unsigned box = 0; box < s_boxes.size(); ++box)
        substituted |= substitute(s_boxes[box], (mixed >> (6 * box)) & 0x3F) << (4 * box);
    return select_bits(round_permutation, substituted);
}

bits_t crypt_block(bits_t block, const subkeys_t &subkeys, bool decipher)
{
    const bits_t permuted = select_bits(initial_permutation, block);
    bits_t left = permuted & half_block_mask;
    bits_t right = permuted >> 32;
    for (std::size_t round = 0; round < subkeys.size(); ++round) {
        if (decipher)
            right ^= round_function(left, subkeys[subkeys.size() - 1 - round]);
        else
            left ^= round_function(right, subkeys[round]);
        std::swap(left, right);
    }
    return select_bits(final_permutation, left | (right << 32));
}

} // namespace

bool des_crypt(std::uint8_t *output, const std::uint8_t *input, std::size_t length,
               const std::uint8_t *key, std::size_t key_length, bool decipher)
{
    if (output == nullptr || input == nullptr || key == nullptr)
        return false;
    std::array<std::uint8_t, key_bytes> padded_key{};
    std::copy_n(key, std::min(key_length, padded_key.size()), padded_key.begin());
    const subkeys_t first = schedule(padded_key.data());
    const subkeys_t second = schedule(padded_key.data() + block_bytes);
    const bool triple = key_length > block_bytes;

    for (std::size_t place = 0; place < length; place += block_bytes) {
        bits_t block =
            crypt_block(read_little_endian<std::uint64_t>(input + place), first, decipher);
        if (triple) {
            block = crypt_block(block, second, !decipher);
            block = crypt_block(block, first, decipher);
        }
        write_little_endian<std::uint64_t>(block, output + place);
    }
    return true;
}
