// SPDX-License-Identifier: MIT
#include "sim/visa/fault_plan.h"

#include <algorithm>

namespace sim::visa {

std::vector<fault_t> fault_plan_t::take(corvane_sim_entry_t entry,
                                        std::optional<std::size_t> resource)
{
    ++calls.at(entry);
    ++calls.at(CORVANE_SIM_ANY_ENTRY);
    std::vector<fault_t> hits;
    for (auto fault = faults.begin(); fault != faults.end();) {
        const bool counts = (fault->entry == CORVANE_SIM_ANY_ENTRY || fault->entry == entry) &&
                            (!fault->resource || fault->resource == resource);
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
    if (fault.kind == CORVANE_SIM_FAULT_LOST)
        reply.reset();
    if (fault.kind == CORVANE_SIM_FAULT_REPLACED)
        reply = pending_reply_t{fault.bytes, reply ? reply->ready_at : bus_clock_t::now()};
    if (!reply)
        return;
    if (fault.kind == CORVANE_SIM_FAULT_TRUNCATED)
        reply->bytes.resize(std::min(bytes, reply->bytes.size()));
    if (fault.kind == CORVANE_SIM_FAULT_OVERSIZED && bytes > reply->bytes.size()) {
        const std::size_t end = reply->bytes.find_last_not_of('\n') + 1;
        reply->bytes.insert(end, bytes - reply->bytes.size(), 'X');
    }
}

} // namespace sim::visa
