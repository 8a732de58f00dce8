// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>

/// Opens a regular file for reading, byte for byte. Throws std::exception, with a text for the user
/// that says why, when it cannot be read or is of another kind, which might keep its reader
/// waiting.
std::ifstream open_to_read(const std::filesystem::path &file);
