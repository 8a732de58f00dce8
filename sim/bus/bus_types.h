// SPDX-License-Identifier: MIT
#pragma once

#include "visa/resource_lock.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

/// What every transport shares when it speaks with an instrument; free of any transport's own
/// terms.
namespace sim {

using bus_clock_t = std::chrono::steady_clock;
using bus_time_t = bus_clock_t::time_point;

/// A moment long past: do not wait.
constexpr bus_time_t at_once = bus_time_t::min();
/// Wait for ever.
constexpr bus_time_t never = bus_time_t::max();

/// Where a resource is on the bus: counts from 0 in the fleet's order. Valid until the fleet is
/// replaced, which closes all sessions.
using place_t = std::size_t;

/// How an exchange with the bus ended.
enum class bus_result_t : std::uint8_t {
    ok,
    timed_out,  ///< no reply, or no lock, before the deadline
    locked,     ///< another session has the lock, and the deadline for that has passed
    lost,       ///< the connection broke (cable, reboot); the session stays dead until it is closed
    closed,     ///< the session is closed, perhaps while the call waited
    not_locked, ///< the session has no lock that it could give back
    wrong_key,  ///< the session shares the lock already, with another key
    fault,      ///< planted, see bus_outcome_t::fault_status
};

/// The result of an operation.
struct bus_outcome_t
{
    bus_result_t result = bus_result_t::ok;
    std::int64_t fault_status = 0; ///< of bus_result_t::fault: what the transport is to answer

    bool ok() const { return result == bus_result_t::ok; }
};

/// What a read has brought. Without bytes and without END only when it did not succeed.
struct bus_read_t : bus_outcome_t
{
    std::size_t count = 0;       ///< bytes stored
    bool end = false;            ///< the last of them carries END: the reply is complete
    bool term_char_seen = false; ///< the last of them is the termination character
};

/// What a lock or unlock has come to.
struct bus_lock_t : bus_outcome_t
{
    ::visa::held_locks_t held{}; ///< what the session has now
};

} // namespace sim
