// SPDX-License-Identifier: MIT
#include "sim/lan/raw_conversation.h"

#include <array>

namespace sim::lan {

using state_t = progress_t::state_t;

raw_conversation_t::raw_conversation_t(bus_t &bus, place_t place, link_table_t &news)
    : session(bus.open(place)), table(news)
{
}

progress_t raw_conversation_t::advance(std::string_view &input, std::string &output)
{
    if (!session || !session->is_connected())
        return {state_t::finished};
    if (const auto due = session->reply_due()) {
        if (*due > bus_clock_t::now())
            return {state_t::waiting, *due};
        reply(output);
    }
    if (!line_is_complete) {
        const std::size_t end = input.find('\n');
        const std::string_view part = input.substr(0, end == input.npos ? end : end + 1);
        line += part;
        input.remove_prefix(part.size());
        line_is_complete = !line.empty() && line.back() == '\n';
        if (!line_is_complete)
            return {line.size() > most_line_bytes ? state_t::finished : state_t::hungry};
    }
    return execute();
}

progress_t raw_conversation_t::execute()
{
    const bus_outcome_t outcome = session->write(line, true);
    if (outcome.result == bus_result_t::locked)
        return {state_t::waiting};
    if (!session->is_connected())
        table.note_change();
    line = {};
    line_is_complete = false;
    return {state_t::going_on};
}

void raw_conversation_t::reply(std::string &output)
{
    std::array<char, 4096> part;
    bus_read_t outcome;
    do {
        outcome = session->read(part.data(), part.size(), at_once);
        output.append(part.data(), outcome.count);
    } while (outcome.ok() && !outcome.end);
}

} // namespace sim::lan
