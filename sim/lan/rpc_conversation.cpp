// SPDX-License-Identifier: MIT
#include "sim/lan/rpc_conversation.h"

#include <utility>

namespace sim::lan {

using state_t = progress_t::state_t;

rpc_conversation_t::rpc_conversation_t(std::unique_ptr<rpc_service_t> procedures)
    : service(std::move(procedures))
{
}

progress_t rpc_conversation_t::advance(std::string_view &input, std::string &output)
{
    using record_state_t = rpc::record_reader_t::state_t;
    if (!service->is_alive())
        return {state_t::finished};
    if (waiting)
        return answer(output);
    switch (records.feed(input)) {
    case record_state_t::complete:
        return answer(output);
    case record_state_t::too_long:
        return {state_t::finished};
    case record_state_t::incomplete:
        break;
    }
    return {state_t::hungry};
}

progress_t rpc_conversation_t::answer(std::string &output)
{
    const std::size_t begin = output.size();
    output += rpc::record_header_room;
    bus_time_t until = never;
    const answer_t result = answer_call(*service, records.record(), waiting, output, until);
    waiting = result == answer_t::awaited;
    if (result == answer_t::given) {
        rpc::end_record(output, begin);
        return {state_t::going_on};
    }
    output.resize(begin);
    return waiting ? progress_t{state_t::waiting, until} : progress_t{state_t::finished};
}

} // namespace sim::lan
