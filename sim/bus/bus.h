// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_session.h"
#include "sim/bus/bus_state.h"
#include "sim/bus/bus_types.h"
#include "sim/bus/fleet.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace sim {

/// The instruments on the bench and who speaks with them; the one thing that transports share.
///
/// Every function may be called from any thread. The sessions must end before the bus does.
class bus_t
{
public:
    /// Everything on the bus, locked as long as this object lives.
    class access_t
    {
    public:
        bus_state_t *operator->() const { return &state; }
        bus_state_t &operator*() const { return state; }

    private:
        friend class bus_t;
        access_t(std::mutex &mutex, bus_state_t &bus_state) : guard(mutex), state(bus_state) {}

        std::unique_lock<std::mutex> guard;
        bus_state_t &state;
    };

    /// Replaces the instruments, closes all sessions, drops faults and scripts; the log and the
    /// call counts stay. Throws fleet_error_t for a resource name that is malformed or used twice,
    /// and then changes nothing.
    void load(const fleet_t &fleet);

    /// The place with this resource name in any spelling, whether something is there now or not;
    /// nothing for a malformed or unknown one.
    std::optional<place_t> find(std::string_view resource_name) const;

    bool is_present(place_t place) const;

    /// When the instrument is back from a reboot (a moment past if it is there); nothing when its
    /// cable is out.
    std::optional<bus_time_t> back_at(place_t place) const;

    /// Connects to a place; null while nothing is there.
    std::shared_ptr<bus_session_t> open(place_t place);

    /// Counts a call that no session does, and lets the faults that hit it act.
    bus_outcome_t note_call(operation_t operation, std::optional<place_t> place = std::nullopt);

    /// For looking into the instruments and for making things go wrong.
    access_t access() { return {mutex, state}; }

private:
    friend class bus_session_t;

    bus_outcome_t suffer(std::unique_lock<std::mutex> &guard, operation_t operation,
                         std::optional<place_t> place, std::vector<fault_t> &reply_faults);

    mutable std::mutex mutex;
    bus_state_t state;
};

} // namespace sim
