// SPDX-License-Identifier: MIT
#include "sim/visa/visa_call.h"
#include "visa/find_list.h"
#include "visa/operations.h"
#include "visa/resource_lock.h"

namespace visa::operations {

using namespace sim;
using namespace sim::visa;

ViStatus lock_session(ViSession handle, ViAccessMode kind, ViUInt32 timeout_ms,
                      const char *requested_key, char *access_key)
{
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::lock);
    if (kind != access_exclusive_lock && kind != access_shared_lock)
        return call.refuse(operation_t::lock, error_invalid_lock_type);
    const auto key = lock_key(kind, requested_key);
    if (!key)
        return call.refuse(operation_t::lock, error_invalid_access_key);
    call.release();
    bus_session_t &port = *call.session->port;
    const bus_time_t deadline = deadline_after(timeout_ms);
    const bool is_exclusive = kind == access_exclusive_lock;
    const bus_lock_t outcome =
        is_exclusive ? port.lock_exclusive(deadline) : port.lock_shared(*key, deadline);
    if (!outcome.ok())
        return status_of(outcome);
    if (!is_exclusive)
        store_text(access_key, outcome.held.key);
    return outcome.held.status_of_lock(kind);
}

ViStatus unlock_session(ViSession handle)
{
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::unlock);
    call.release();
    const bus_lock_t outcome = call.session->port->unlock();
    return outcome.ok() ? outcome.held.status_of_unlock() : status_of(outcome);
}

} // namespace visa::operations
