// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/visa_world.h"

#include <memory>
#include <mutex>
#include <optional>

namespace sim::visa {

/// The status that stands for the result of a bus operation.
ViStatus status_of(const bus_outcome_t &outcome);

/// The moment at which a time-out of so many milliseconds that begins now is over.
bus_time_t deadline_after(ViUInt32 timeout_ms);

/// One call of an entry point on an object: holds the world's mutex, and knows the session that the
/// object is, if it is one.
class visa_call_t
{
public:
    explicit visa_call_t(ViObject handle);

    /// Whether the object is a session with an instrument.
    explicit operator bool() const { return session != nullptr; }

    /// For a call that the bus does: releases the world.
    void release() { lock.unlock(); }

    /// For a call that the bus does not: counts it and lets faults act on it, with the world
    /// released meanwhile. The status to return at once, by a fault.
    std::optional<ViStatus> count(operation_t operation);

    /// The same for a call that is refused: the status to return in any case.
    ViStatus refuse(operation_t operation, ViStatus reason);

    /// Refuses a call on an object that is no session with an instrument.
    ViStatus refuse_object(operation_t operation);

    visa_world_t &world;
    std::unique_lock<std::mutex> lock;
    std::shared_ptr<visa_session_t> session;

private:
    const ViObject handle;
};

} // namespace sim::visa
