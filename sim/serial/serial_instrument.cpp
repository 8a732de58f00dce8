// SPDX-License-Identifier: MIT
#include "sim/serial/serial_instrument.h"

#include "sim/serial/waiting.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace sim::serial {

serial_instrument_t::serial_instrument_t(bus_t &its_bus, place_t its_place,
                                         const reply_pace_t &reply_pace, int stop_descriptor,
                                         std::ostream *message_log)
    : bus(its_bus), place(its_place), pace(reply_pace), stop(stop_descriptor), log(message_log)
{
}

void serial_instrument_t::serve(pseudo_terminal_t &terminal)
{
    const auto session = bus.open(place);
    message_splitter_t splitter;
    while (session && session->is_connected()) {
        const wake_t wake =
            wait_for(stop, terminal.descriptor(), splitter.empty() ? forever_ms : quiet_gap_ms);
        if (wake == wake_t::stop)
            return;
        if (wake == wake_t::line)
            splitter.add(terminal.receive());
        while (session->is_connected()) {
            const auto message = splitter.take(wake == wake_t::timeout);
            if (!message)
                break;
            answer(*message, *session, terminal);
        }
    }
}

bool serial_instrument_t::wait_for_return() const
{
    const auto back = bus.back_at(place);
    return back && pass_until(*back);
}

bool serial_instrument_t::pass_until(bus_time_t time) const
{
    using std::chrono::milliseconds;
    const auto now = bus_clock_t::now();
    const auto left = std::chrono::ceil<milliseconds>(std::max(time, now) - now);
    return wait_for(stop, no_line, static_cast<int>(left.count())) == wake_t::timeout;
}

void serial_instrument_t::answer(const std::string &message, bus_session_t &session,
                                 pseudo_terminal_t &terminal) const
{
    if (log != nullptr)
        *log << message << std::endl;
    session.write(message, true);
    const auto due = session.reply_due();
    if (!due || !pass_until(*due))
        return;
    std::array<char, 4096> piece;
    std::string reply;
    bus_read_t read;
    do {
        read = session.read(piece.data(), piece.size(), at_once);
        reply.append(piece.data(), read.count);
    } while (read.ok() && !read.end);
    send(reply, terminal);
}

void serial_instrument_t::send(std::string_view reply, pseudo_terminal_t &terminal) const
{
    const std::size_t piece_bytes = pace.piece_bytes == 0 ? reply.size() : pace.piece_bytes;
    for (std::size_t sent = 0; sent < reply.size(); sent += piece_bytes) {
        if (sent > 0 && !pass_until(bus_clock_t::now() + pace.piece_pause))
            return;
        terminal.send(reply.substr(sent, piece_bytes));
    }
}

} // namespace sim::serial
