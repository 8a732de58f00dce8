// SPDX-License-Identifier: MIT
#include "sim/bus/bus.h"

#include <chrono>
#include <thread>
#include <utility>

namespace sim {

using lock_guard_t = std::lock_guard<std::mutex>;

void bus_t::load(const fleet_t &fleet)
{
    const lock_guard_t guard(mutex);
    state.load(fleet);
    for (bus_session_t *const session : std::exchange(state.sessions, {})) {
        session->is_closed = true;
        session->wake();
    }
}

std::optional<place_t> bus_t::find(std::string_view resource_name) const
{
    const lock_guard_t guard(mutex);
    return state.find(resource_name);
}

bool bus_t::is_present(place_t place) const
{
    const lock_guard_t guard(mutex);
    return state.is_present(place);
}

std::optional<bus_time_t> bus_t::back_at(place_t place) const
{
    const lock_guard_t guard(mutex);
    return state.back_at(place);
}

std::shared_ptr<bus_session_t> bus_t::open(place_t place)
{
    const lock_guard_t guard(mutex);
    if (place >= state.places().size() || !state.is_present(place))
        return nullptr;
    auto session = std::make_shared<bus_session_t>(*this, place, state.place(place).connection);
    state.sessions.push_back(session.get());
    return session;
}

bus_outcome_t bus_t::note_call(operation_t operation, std::optional<place_t> place)
{
    std::unique_lock<std::mutex> guard(mutex);
    std::vector<fault_t> without_reply;
    return suffer(guard, operation, place, without_reply);
}

bus_outcome_t bus_t::suffer(std::unique_lock<std::mutex> &guard, operation_t operation,
                            std::optional<place_t> place, std::vector<fault_t> &reply_faults)
{
    bus_outcome_t outcome;
    for (fault_t &fault : state.faults.take(operation, place)) {
        if (fault.kind == fault_kind_t::status) {
            outcome = {bus_result_t::fault, fault.value};
        } else if (fault.kind == fault_kind_t::unplug && place) {
            // A delay before it may have seen another fleet come.
            if (*place < state.places().size())
                state.unplug(*place);
        } else if (fault.kind == fault_kind_t::delay && operation != operation_t::read) {
            guard.unlock();
            std::this_thread::sleep_for(std::chrono::milliseconds(fault.value));
            guard.lock();
        } else {
            reply_faults.push_back(std::move(fault));
        }
    }
    return outcome;
}

} // namespace sim
