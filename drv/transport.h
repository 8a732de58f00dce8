// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// An instrument that a search found.
struct found_instrument_t
{
    /// What opens it: a VISA resource name, or the name of a serial port.
    std::string name;
    /// Its place, from 1, among all that the search went through.
    int position;
};

/// What finds the instrument and carries commands to it: VISA where a library is ready, else the
/// instrument's USB serial port. Which of the two it is, is decided here and nowhere else.
///
/// Operations return false on failure; replies come without their last character, the line
/// terminator, and what a failed operation was to fill is left as it was. Use from the GUI thread.
class transport_t
{
public:
    /// The one that this run uses; VISA is initialised by the first call at the latest.
    static transport_t &current();

    transport_t(const transport_t &) = delete;
    transport_t &operator=(const transport_t &) = delete;

    /// True when commands are to be carried only while `drv_command_t::link_mode` says that an
    /// instrument is connected.
    virtual bool heeds_link_mode() const noexcept = 0;
    /// The instruments that are attached over USB, in the order of the system.
    virtual std::vector<found_instrument_t> find() = 0;
    /// Opens what a search found.
    virtual bool open(const std::string &name) = 0;
    /// Sends the bytes of `text`; nothing is added.
    virtual bool write(const std::string &text) = 0;
    /// Reads a reply that is due.
    virtual bool read(std::string &out) = 0;
    /// Sends `text` and reads the reply to it.
    virtual bool query(const std::string &text, std::string &out) = 0;

protected:
    transport_t() = default;
    ~transport_t() = default;
};
