// SPDX-License-Identifier: MIT
#include "sim/bus/message_exchange.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace sim {

void message_exchange_t::clear()
{
    unfinished_message.clear();
    drop_reply();
}

bool message_exchange_t::drop_reply()
{
    const bool waited = reply.has_value();
    reply.reset();
    reply_lost = false;
    return waited;
}

void message_exchange_t::hand_out(char *target, std::size_t capacity, std::optional<char> term_char,
                                  bus_read_t &outcome)
{
    // A fault may have cut the reply behind what was read already.
    reply->bytes_read = std::min(reply->bytes_read, reply->bytes.size());
    std::string_view next = std::string_view(reply->bytes).substr(reply->bytes_read, capacity);
    const auto term = term_char ? next.find(*term_char) : std::string_view::npos;
    outcome.term_char_seen = term != std::string_view::npos;
    if (outcome.term_char_seen)
        next = next.substr(0, term + 1);
    if (!next.empty())
        std::memcpy(target, next.data(), next.size());
    outcome.count = next.size();
    reply->bytes_read += next.size();
    outcome.end = reply->bytes_read == reply->bytes.size();
    if (outcome.end)
        reply.reset();
}

} // namespace sim
