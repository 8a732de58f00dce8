// SPDX-License-Identifier: MIT
#include "sim/instrument/error_queue.h"

namespace sim {

void error_queue_t::push(scpi_error_t error)
{
    if (entries.size() < depth)
        entries.push_back(error);
    else
        entries.back() = scpi_error_t::queue_overflow;
}

std::string error_queue_t::take()
{
    scpi_error_t error = scpi_error_t::none;
    if (!entries.empty()) {
        error = entries.front();
        entries.pop_front();
    }
    std::string reply = std::to_string(static_cast<int>(error));
    reply.append(",\"").append(error_text(error)).append("\"");
    return reply;
}

} // namespace sim
