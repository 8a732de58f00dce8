// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

#include <chrono>
#include <cstddef>
#include <string_view>

namespace visa_io {

using io_clock_t = std::chrono::steady_clock;
using deadline_t = io_clock_t::time_point;

/// What came of a transfer.
struct transfer_t
{
    ViStatus status = visa::success;
    std::size_t count = 0; ///< bytes that were transferred, also when it failed
    bool end = false;      ///< reads only: the last byte was the message's last
};

/// An instrument as one session is connected to it, whatever carries the bytes.
///
/// No call takes longer than until its deadline and a second. One call at a time: the session sees
/// to that. After error_timeout a late reply of the instrument never answers a later query. After
/// error_connection_lost every further call gives the same.
class device_link_t
{
public:
    device_link_t() = default;
    virtual ~device_link_t() = default;

    device_link_t(const device_link_t &) = delete;
    device_link_t &operator=(const device_link_t &) = delete;

    /// Sends all bytes, the last of them as the end of the message when `end` is set.
    virtual transfer_t write(std::string_view data, bool end, deadline_t deadline) = 0;

    /// Receives until the end of the message, the termination character (negative: none), or as
    /// many bytes as the buffer takes.
    virtual transfer_t read(char *buffer, std::size_t size, int term_char, deadline_t deadline) = 0;

    /// Clears the instrument's input and output (IEEE 488.2's device clear).
    virtual ViStatus clear(deadline_t deadline) = 0;

    /// Reads the status byte beside the messages.
    virtual ViStatus read_status_byte(ViUInt8 &status, deadline_t deadline) = 0;

    /// Sends the trigger beside the messages.
    virtual ViStatus trigger(deadline_t deadline) = 0;

    /// From another thread: ends the call that waits, and the link; a link that cannot do so lets
    /// the call end by its deadline.
    virtual void cancel() {}
};

} // namespace visa_io
