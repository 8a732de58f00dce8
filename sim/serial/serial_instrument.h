// SPDX-License-Identifier: MIT
#pragma once

#include "sim/serial/message_splitter.h"
#include "sim/serial/pseudo_terminal.h"
#include "sim/sim_instrument.h"

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace sim::serial {

/// How replies go out.
struct reply_pace_t
{
    std::chrono::milliseconds delay{0};       ///< from a query to its reply
    std::size_t piece_bytes = 0;              ///< size of the pieces of a reply; 0: one piece
    std::chrono::milliseconds piece_pause{0}; ///< between two pieces
};

/// A simulated instrument that speaks over a serial line.
class serial_instrument_t
{
public:
    /// How long the line must be quiet for a message to be over.
    static constexpr int quiet_gap_ms = 5;

    /// Serving ends once the descriptor `stop` is readable. Every message is also written to
    /// `log`, a line each, unless that is null.
    serial_instrument_t(const instrument_config_t &config, const reply_pace_t &pace, int stop,
                        std::ostream *log);

    /// Serves a line until the instrument leaves it: `reboot` when it is to come back on a new
    /// line, `unplug` when not. `none` says that serving is to end.
    instrument_effect_t serve(pseudo_terminal_t &terminal);

    /// Lets time pass; false when serving is to end.
    bool pass(std::chrono::milliseconds time) const;

private:
    instrument_effect_t answer(const std::string &message, pseudo_terminal_t &terminal);
    void send(const std::string &reply, pseudo_terminal_t &terminal) const;

    sim_instrument_t instrument;
    reply_pace_t pace;
    int stop;
    std::ostream *log;
};

} // namespace sim::serial
