// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// The block cipher of package headers, in electronic-codebook mode on blocks of 8 bytes.
///
/// It is the DES of FIPS 46-3 with three departures on which every package depends:
/// - bit n of the standard's tables is bit (n - 1) mod 8, least significant first, of byte
///   (n - 1) div 8;
/// - an S-box emits its value least significant bit first;
/// - the halves are not exchanged after round 16.
/// No implementation of standard DES can stand in for it.
///
/// Of the key at most 16 bytes are used, and zeros stand for those that are missing. A key longer
/// than 8 bytes makes it triple DES with two keys (encipher, decipher, encipher; the reverse to
/// decipher). `length` in bytes is rounded up to a multiple of 8, and both buffers must have that
/// size; they may be the same. False, and nothing done, when a pointer is null.
bool des_crypt(std::uint8_t *output, const std::uint8_t *input, std::size_t length,
               const std::uint8_t *key, std::size_t key_length, bool decipher);
