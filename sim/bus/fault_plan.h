// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"
#include "sim/bus/message_exchange.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sim {

/// What transports ask of the bus, or do on their own side of it.
enum class operation_t : std::uint8_t {
    any,
    open_manager,
    set_attribute,
    get_attribute,
    close,
    find,
    find_next,
    open,
    clear,
    write,
    read,
    read_status_byte,
    trigger,
    lock,
    unlock,
    other, ///< what concerns the transport only: names, texts, buffers, events
};

/// The kinds of corvane_sim_fault_kind_t, where they are described.
enum class fault_kind_t : std::uint8_t {
    status = 1,
    delay,
    lost,
    truncated,
    oversized,
    replaced,
    unplug,
};

/// One thing that is to go wrong.
struct fault_t
{
    fault_kind_t kind = fault_kind_t::status;
    operation_t operation = operation_t::any;
    std::uint32_t calls_left = 1; ///< 1: the next call that counts
    std::optional<place_t> place; ///< nothing: any
    bool sticky = false;
    std::int64_t value = 0;
    std::string bytes;
};

/// Tells which faults hit a call, and counts the calls.
class fault_plan_t
{
public:
    void add(fault_t fault) { faults.push_back(std::move(fault)); }
    void clear() { faults.clear(); }

    /// Counts a call and takes the faults that hit it, in the order in which they were added.
    std::vector<fault_t> take(operation_t operation, std::optional<place_t> place);

    /// The number of calls of the operation so far.
    std::uint64_t call_count(operation_t operation) const
    {
        return calls.at(static_cast<std::size_t>(operation));
    }

private:
    std::vector<fault_t> faults;
    std::array<std::uint64_t, static_cast<std::size_t>(operation_t::other) + 1> calls{};
};

/// Changes a reply on its way as a reply fault demands; the other faults leave it alone.
void apply_reply_fault(const fault_t &fault, std::optional<pending_reply_t> &reply);

} // namespace sim
