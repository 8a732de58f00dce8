// SPDX-License-Identifier: MIT
#include "sim/serial/serial_instrument.h"

#include <cerrno>
#include <ostream>
#include <poll.h>

namespace sim::serial {

namespace {

constexpr int forever = -1;

/// True when one of the descriptors became readable in time.
template <std::size_t count>
bool wait_for(pollfd (&descriptors)[count], int timeout_ms)
{
    int ready = 0;
    do
        ready = poll(descriptors, count, timeout_ms);
    while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace

serial_instrument_t::serial_instrument_t(const instrument_config_t &config,
                                         const reply_pace_t &reply_pace, int stop_descriptor,
                                         std::ostream *message_log)
    : instrument(config), pace(reply_pace), stop(stop_descriptor), log(message_log)
{
}

instrument_effect_t serial_instrument_t::serve(pseudo_terminal_t &terminal)
{
    message_splitter_t splitter;
    pollfd descriptors[] = {{stop, POLLIN, 0}, {terminal.descriptor(), POLLIN, 0}};
    for (;;) {
        const bool quiet = !wait_for(descriptors, splitter.empty() ? forever : quiet_gap_ms);
        if (!quiet && descriptors[0].revents != 0)
            return instrument_effect_t::none;
        if (!quiet)
            splitter.add(terminal.receive());
        while (const auto message = splitter.take(quiet)) {
            const instrument_effect_t effect = answer(*message, terminal);
            if (effect != instrument_effect_t::none)
                return effect;
        }
    }
}

bool serial_instrument_t::pass(std::chrono::milliseconds time) const
{
    pollfd descriptors[] = {{stop, POLLIN, 0}};
    return !wait_for(descriptors, static_cast<int>(time.count()));
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
