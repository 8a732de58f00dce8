// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

/// The SHA-256 of so many bytes of a file, in lower-case hexadecimal; empty when the file cannot be
/// read or does not have them all.
std::string sha256_of(const std::filesystem::path &file, std::uint64_t offset,
                      std::uint64_t length);
