// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace sim::serial {

/// The instrument's end of a pseudo-terminal; a program opens the other end as a serial port.
///
/// Programs come and go without the line being lost. With this object it is: a program that has it
/// open then sees what it sees when a USB cable is pulled.
class pseudo_terminal_t
{
public:
    /// Throws std::system_error when there is none to be had.
    pseudo_terminal_t();
    ~pseudo_terminal_t();
    pseudo_terminal_t(const pseudo_terminal_t &) = delete;
    pseudo_terminal_t &operator=(const pseudo_terminal_t &) = delete;

    /// The device that a program opens.
    const std::string &path() const { return device; }

    /// Becomes readable when a program has sent something.
    int descriptor() const { return instrument_end; }

    /// The bytes that have arrived.
    std::string receive();

    /// Sends without waiting: what nobody reads is lost once the line's buffer is full.
    void send(std::string_view bytes);

private:
    int instrument_end = -1;
    int program_end = -1; ///< kept open, so that the line outlives the programs
    std::string device;
};

} // namespace sim::serial
