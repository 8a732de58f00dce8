// SPDX-License-Identifier: MIT
#include "sim/serial/serial_instrument.h"

#include "sim/serial/waiting.h"

#include <ostream>

namespace sim::serial {

serial_instrument_t::serial_instrument_t(const instrument_config_t &config,
                                         const reply_pace_t &reply_pace, int stop_descriptor,
                                         std::ostream *message_log)
    : instrument(config), pace(reply_pace), stop(stop_descriptor), log(message_log)
{
}

instrument_effect_t serial_instrument_t::serve(pseudo_terminal_t &terminal)
{
    message_splitter_t splitter;
    for (;;) {
        const wake_t wake =
            wait_for(stop, terminal.descriptor(), splitter.empty() ? forever_ms : quiet_gap_ms);
        if (wake == wake_t::stop)
            return instrument_effect_t::none;
        if (wake == wake_t::line)
            splitter.add(terminal.receive());
        while (const auto message = splitter.take(wake == wake_t::timeout)) {
            const instrument_effect_t effect = answer(*message, terminal);
            if (effect != instrument_effect_t::none)
                return effect;
        }
    }
}

bool serial_instrument_t::pass(std::chrono::milliseconds time) const
{
    return wait_for(stop, no_line, static_cast<int>(time.count())) == wake_t::timeout;
}

instrument_effect_t serial_instrument_t::answer(const std::string &message,
                                                pseudo_terminal_t &terminal)
{
    if (log != nullptr)
        *log << message << std::endl;
    const instrument_outcome_t outcome = instrument.receive(message);
    if (outcome.reply && pass(pace.delay))
        send(*outcome.reply, terminal);
    return outcome.effect;
}

void serial_instrument_t::send(const std::string &reply, pseudo_terminal_t &terminal) const
{
    const std::size_t piece_bytes = pace.piece_bytes == 0 ? reply.size() : pace.piece_bytes;
    for (std::size_t sent = 0; sent < reply.size(); sent += piece_bytes) {
        if (sent > 0 && !pass(pace.piece_pause))
            return;
        terminal.send(std::string_view(reply).substr(sent, piece_bytes));
    }
}

} // namespace sim::serial
