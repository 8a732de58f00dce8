// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/scpi_error.h"

#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// One command or query of a message: its full header and its arguments.
struct message_unit_t
{
    std::string header;
    std::vector<std::string_view> arguments;
    scpi_error_t error = scpi_error_t::none; ///< why the unit cannot be read, if it cannot
};

/// Reads the units of one program message one after the other (IEEE 488.2, chapter 7).
///
/// Units are separated by ";". A header without a leading colon continues in the path of
/// the header before it, a common command ("*IDN?") leaves the path alone (SCPI-99
/// volume 1, chapter 6.2.4). The message must outlive the units.
class scpi_message_t
{
public:
    /// Takes a message without its line end.
    explicit scpi_message_t(std::string_view message);

    bool at_end() const { return finished; }
    message_unit_t next();

private:
    std::string full_header(std::string_view header);

    std::string_view rest;
    std::string path;
    bool finished;
};

/// The message without one "\n" or "\r\n" at its end.
std::string_view without_line_end(std::string_view message);

/// The characters up to the first blank or control character.
std::string_view header_of(std::string_view unit);

} // namespace sim
