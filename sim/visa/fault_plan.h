// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/sim_control.h"
#include "sim/visa/visa_session.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim::visa {

/// One thing that is to go wrong, see corvane_sim_fault_t.
struct fault_t
{
    corvane_sim_fault_kind_t kind = CORVANE_SIM_FAULT_STATUS;
    corvane_sim_entry_t entry = CORVANE_SIM_ANY_ENTRY;
    std::uint32_t calls_left = 1;        ///< 1: the next call that counts
    std::optional<std::size_t> resource; ///< nothing: any
    bool sticky = false;
    std::int64_t value = 0;
    std::string bytes;
};

/// Tells which faults hit a call, and counts the calls. Guarded by the library's mutex.
class fault_plan_t
{
public:
    void add(fault_t fault) { faults.push_back(std::move(fault)); }
    void clear() { faults.clear(); }

    /// Counts a call and takes the faults that hit it, in the order in which they were added.
    std::vector<fault_t> take(corvane_sim_entry_t entry, std::optional<std::size_t> resource);

    /// The number of calls of the entry point so far.
    std::uint64_t call_count(corvane_sim_entry_t entry) const { return calls.at(entry); }

private:
    std::vector<fault_t> faults;
    std::array<std::uint64_t, CORVANE_SIM_READ + 1> calls{}; ///< the first counts all
};

/// Changes a reply on its way as a reply fault demands; the other faults leave it alone.
void apply_reply_fault(const fault_t &fault, std::optional<pending_reply_t> &reply);

} // namespace sim::visa
