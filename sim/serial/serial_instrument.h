// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus.h"
#include "sim/serial/message_splitter.h"
#include "sim/serial/pseudo_terminal.h"

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>

namespace sim::serial {

/// How replies go out.
struct reply_pace_t
{
    std::size_t piece_bytes = 0;              ///< size of the pieces of a reply; 0: one piece
    std::chrono::milliseconds piece_pause{0}; ///< between two pieces
};

/// The serial line of an instrument on the bus: finds the messages in what arrives, and sends
/// replies as they come.
class serial_instrument_t
{
public:
    /// How long the line must be quiet for a message to be over.
    static constexpr int quiet_gap_ms = 5;

    /// Serving ends once the descriptor `stop` is readable. Every message is also written to
    /// `log`, a line each, unless that is null.
    serial_instrument_t(bus_t &bus, place_t place, const reply_pace_t &pace, int stop,
                        std::ostream *log);

    /// Serves a line until the instrument leaves it.
    void serve(pseudo_terminal_t &terminal);

    /// Waits until the instrument is back on the bus, for a new line; false when it does not come
    /// back or when serving is to end.
    bool wait_for_return() const;

private:
    /// False when serving is to end.
    bool pass_until(bus_time_t time) const;
    void answer(const std::string &message, bus_session_t &session,
                pseudo_terminal_t &terminal) const;
    void send(std::string_view reply, pseudo_terminal_t &terminal) const;

    bus_t &bus;
    place_t place;
    reply_pace_t pace;
    int stop;
    std::ostream *log;
};

} // namespace sim::serial
