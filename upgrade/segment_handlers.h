// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>

/// Sends a segment, or the next part of it, to the instrument: the package, the bytes of
/// the segment that are sent (which it brings up to date), the type, offset and length of the
/// segment record. False when the segment has failed.
using segment_handler_t =
    std::function<bool(const std::filesystem::path &file, std::uint32_t &progress,
                       std::uint32_t type, std::uint32_t data_offset, std::uint32_t data_length)>;

/// The size of the blocks in which images go out.
constexpr std::size_t image_block_bytes = 2048;

/// The pauses after the commands that carry segments.
namespace segment_pauses {
constexpr unsigned long announce_ms = 10;
constexpr unsigned long block_ms = 150;
constexpr unsigned long parameter_ms = 30;
} // namespace segment_pauses

/// Enters the handler of every kind of segment into the table by which `dispatch_segment` goes.
/// There is one table for the process; fill it only while no upgrade runs.
void fill_segment_handlers();

/// Calls the handler for the low byte of `type`; false when there is none. An image goes out one
/// block a call, a parameter at once.
bool dispatch_segment(const std::filesystem::path &file, std::uint32_t &progress,
                      std::uint32_t type, std::uint32_t data_offset, std::uint32_t data_length);
