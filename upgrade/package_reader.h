// SPDX-License-Identifier: MIT
#pragma once

#include "upgrade/package_format.h"

#include <cstdint>
#include <filesystem>

/// Reads firmware packages. Files are opened for each operation and closed again. Nothing here
/// trusts what a package says about itself.

/// Reads and deciphers the header; true when it passes `check_upgrade_header`. A file that cannot
/// be opened, or is shorter than a header, is refused and `header` left alone.
bool read_upgrade_header(const std::filesystem::path &file, upgrade_header_t &header);

/// Reads the record at `offset`. Always true: ask `file_holds` before whether the file has one
/// there; what it lacks is left as it was in `buffer`.
bool read_segment_record(const std::filesystem::path &file, segment_record_buffer_t &buffer,
                         std::uint64_t offset);

/// Reads `length` bytes of a payload; false when the file does not have them all.
bool read_payload(const std::filesystem::path &file, std::uint64_t offset, char *buffer,
                  std::size_t length);

/// True when this is a regular file with all bytes of the range, or the range is empty.
bool file_holds(const std::filesystem::path &file, std::uint64_t offset, std::uint64_t length);

/// True when a deciphered header has the magic and an identifier that `check_product_id` accepts.
/// What follows the header is not looked at.
bool check_upgrade_header(const upgrade_header_t &header);
