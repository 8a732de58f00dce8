// SPDX-License-Identifier: MIT
#include "sim/visa/visa_call.h"

#include <chrono>

namespace sim::visa {

ViStatus status_of(const bus_outcome_t &outcome)
{
    switch (outcome.result) {
    case bus_result_t::ok:
        return success;
    case bus_result_t::timed_out:
        return error_timeout;
    case bus_result_t::locked:
        return error_resource_locked;
    case bus_result_t::lost:
        return error_connection_lost;
    case bus_result_t::closed:
        return error_invalid_object;
    case bus_result_t::not_locked:
        return error_session_not_locked;
    case bus_result_t::wrong_key:
        return error_invalid_access_key;
    case bus_result_t::fault:
        break;
    }
    return static_cast<ViStatus>(outcome.fault_status);
}

bus_time_t deadline_after(ViUInt32 timeout_ms)
{
    if (timeout_ms == timeout_immediate)
        return at_once;
    return timeout_ms == timeout_infinite
               ? never
               : bus_clock_t::now() + std::chrono::milliseconds(timeout_ms);
}

visa_call_t::visa_call_t(ViObject object)
    : world(visa_world_t::instance()),
      lock(world.mutex),
      session(world.objects.session(object)),
      handle(object)
{
}

std::optional<ViStatus> visa_call_t::count(operation_t operation)
{
    lock.unlock();
    const auto outcome = world.bus.note_call(
        operation, session ? std::optional(session->port->place()) : std::nullopt);
    lock.lock();
    return outcome.ok() ? std::nullopt : std::optional(status_of(outcome));
}

ViStatus visa_call_t::refuse(operation_t operation, ViStatus reason)
{
    return count(operation).value_or(reason);
}

ViStatus visa_call_t::refuse_object(operation_t operation)
{
    const bool known = world.objects.is_known(handle);
    return refuse(operation, known ? error_operation_not_supported : error_invalid_object);
}

} // namespace sim::visa
