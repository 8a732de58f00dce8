// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// How a firmware package (".ADS") is laid out: an enciphered header, and behind it a chain of
/// plain segment records, each followed by the payload that it describes. Integers are
/// little-endian, offsets count from the start of the file.

constexpr std::size_t upgrade_header_bytes = 112;
constexpr std::size_t segment_record_bytes = 12;

using upgrade_header_t = std::array<std::uint8_t, upgrade_header_bytes>;
using segment_record_buffer_t = std::array<std::uint8_t, segment_record_bytes>;

/// Where the fields of the deciphered header begin. The other bytes may hold anything.
namespace header_layout {
constexpr std::size_t end_offset = 4;
constexpr std::size_t product_id = 12;
constexpr std::size_t magic = 58;
} // namespace header_layout

/// What every header holds, its terminating zero included.
constexpr std::array<std::uint8_t, 8> header_magic{'I', 'S', 'P', '1', '7', '6', '3', '\0'};

/// The key of the header cipher.
constexpr std::array<std::uint8_t, 16> header_key{0x3a, 0x5c, 0x07, 0x19, 0x62, 0x0e, 0x4b, 0x11,
                                                  0x28, 0x73, 0x05, 0x5d, 0x16, 0x2f, 0x44, 0x0c};

/// The file offset at which the segment chain ends.
std::uint32_t header_end_offset(const upgrade_header_t &header);
std::int32_t header_product_id(const upgrade_header_t &header);
bool header_has_magic(const upgrade_header_t &header);

/// Says where a segment's payload is and what it is.
struct segment_record_t
{
    std::uint32_t type;
    std::uint32_t data_offset;
    std::uint32_t data_length;

    /// The part of the type that means something.
    std::uint8_t kind() const noexcept { return static_cast<std::uint8_t>(type); }
};

segment_record_t parse_segment_record(const segment_record_buffer_t &buffer);

/// How the instrument takes a segment's payload.
enum class segment_transfer_t : std::uint8_t {
    parameter,   ///< in one command, behind its text
    image,       ///< in blocks, after an announcement
    loader_image ///< as an image, by the boot loader
};

/// A kind of segment: its number, its name, and the command that carries a parameter or announces
/// an image.
struct segment_kind_t
{
    std::uint8_t type;
    std::string_view name;
    segment_transfer_t transfer;
    std::string_view command;
};

constexpr std::array<segment_kind_t, 7> segment_kinds{{
    {1, "host", segment_transfer_t::loader_image, "HOSTUG "},
    {3, "boot", segment_transfer_t::image, "BOOTUG "},
    {5, "product", segment_transfer_t::parameter, "SYSTem:DEVice:PRODUCTUG "},
    {6, "manufacturer", segment_transfer_t::parameter, "SYSTem:DEVice:MANUFTRUG "},
    {8, "pid", segment_transfer_t::parameter, "SYSTem:DEVice:PIDUG "},
    {9, "vid", segment_transfer_t::parameter, "SYSTem:DEVice:VIDUG "},
    {10, "product-id", segment_transfer_t::parameter, "SYSTem:DEVice:PRODUCTUG:ID "},
}};

/// The kind with this number, or null.
const segment_kind_t *find_segment_kind(std::uint8_t type);

/// A parameter command, text and payload together, has at most this many bytes.
constexpr std::size_t parameter_command_bytes = 100;

/// True when a payload of `length` bytes is not too long for its command. Images always fit.
bool payload_fits(const segment_kind_t &kind, std::size_t length);
