// SPDX-License-Identifier: MIT
#include "sim/visa/visa_locks.h"

#include "sim/visa/visa_call.h"

#include <atomic>
#include <cstring>
#include <string>

namespace sim::visa {

namespace {

std::string new_key()
{
    static std::atomic<unsigned> last_number{0};
    return "corvane-simulator-" + std::to_string(++last_number);
}

// What is left after an unlock, or is nested after a lock.
ViStatus nested_status(unsigned exclusive_count, unsigned shared_count, unsigned unnested)
{
    if (exclusive_count > unnested)
        return success_nested_exclusive;
    return shared_count > unnested ? success_nested_shared : success;
}

ViStatus lock_exclusively(bus_session_t &port, bus_time_t deadline)
{
    const bus_lock_t outcome = port.lock_exclusive(deadline);
    return outcome.ok() ? nested_status(outcome.exclusive_count, 0, 1) : status_of(outcome);
}

ViStatus lock_shared(bus_session_t &port, bus_time_t deadline, const std::string &key,
                     char *access_key)
{
    const bus_lock_t outcome = port.lock_shared(key, deadline);
    if (!outcome.ok())
        return status_of(outcome);
    if (access_key != nullptr)
        std::memcpy(access_key, outcome.key.c_str(), outcome.key.size() + 1);
    return nested_status(0, outcome.shared_count, 1);
}

} // namespace

ViStatus lock_session(ViSession handle, ViAccessMode kind, ViUInt32 timeout_ms,
                      const char *requested_key, char *access_key)
{
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::lock);
    if (kind != access_exclusive_lock && kind != access_shared_lock)
        return call.refuse(operation_t::lock, error_invalid_lock_type);
    // An exclusive lock has no key, whatever is passed.
    const bool wants_key = kind == access_shared_lock && requested_key != nullptr;
    const std::string key = wants_key ? requested_key : new_key();
    if (key.empty() || key.size() >= find_buffer_bytes)
        return call.refuse(operation_t::lock, error_invalid_access_key);
    call.release();
    bus_session_t &port = *call.session->port;
    const bus_time_t deadline = deadline_after(timeout_ms);
    return kind == access_exclusive_lock ? lock_exclusively(port, deadline)
                                         : lock_shared(port, deadline, key, access_key);
}

ViStatus unlock_session(ViSession handle)
{
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::unlock);
    call.release();
    const bus_lock_t outcome = call.session->port->unlock();
    return outcome.ok() ? nested_status(outcome.exclusive_count, outcome.shared_count, 0)
                        : status_of(outcome);
}

} // namespace sim::visa
