// SPDX-License-Identifier: MIT
#include "sim/bus/fault_plan.h"

#include <algorithm>

namespace sim {

std::vector<fault_t> fault_plan_t::take(operation_t operation, std::optional<place_t> place)
{
    ++calls.at(static_cast<std::size_t>(operation));
    ++calls.at(static_cast<std::size_t>(operation_t::any));
    std::vector<fault_t> hits;
    for (auto fault = faults.begin(); fault != faults.end();) {
        const bool counts =
            (fault->operation == operation_t::any || fault->operation == operation) &&
            (!fault->place || fault->place == place);
        if (!counts || --fault->calls_left > 0) {
            ++fault;
            continue;
        }
        hits.push_back(*fault);
        fault->calls_left = 1;
        fault = fault->sticky ? fault + 1 : faults.erase(fault);
    }
    return hits;
}

void apply_reply_fault(const fault_t &fault, std::optional<pending_reply_t> &reply)
{
    const auto bytes = static_cast<std::size_t>(std::max<std::int64_t>(fault.value, 0));
    if (fault.kind == fault_kind_t::lost)
        reply.reset();
    if (fault.kind == fault_kind_t::replaced)
        reply = pending_reply_t{fault.bytes, reply ? reply->ready_at : at_once};
    if (!reply)
        return;
    if (fault.kind == fault_kind_t::truncated)
        reply->bytes.resize(std::min(bytes, reply->bytes.size()));
    if (fault.kind == fault_kind_t::oversized && bytes > reply->bytes.size()) {
        const std::size_t end = reply->bytes.find_last_not_of('\n') + 1;
        reply->bytes.insert(end, bytes - reply->bytes.size(), 'X');
    }
}

} // namespace sim
