// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// True when bytes read the same through a file in the text mode of Windows, in which Corvane reads
/// headers and segment records: no Ctrl-Z, which ends the file, and no CR that an LF follows or,
/// behind the last byte, could follow.
bool survives_text_mode(const std::uint8_t *bytes, std::size_t count);
