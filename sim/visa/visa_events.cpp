// SPDX-License-Identifier: MIT
#include "sim/visa/visa_call.h"
#include "visa/operations.h"

#include <algorithm>

namespace visa::operations {

using namespace sim;
using namespace sim::visa;

namespace {

// Counts a call on the events of a session; the status to return at once.
std::optional<ViStatus> begin(visa_call_t &call)
{
    if (!call)
        return call.refuse_object(operation_t::other);
    return call.count(operation_t::other);
}

} // namespace

ViStatus enable_event(ViSession session, ViEventType type, ViUInt16 mechanism, ViUInt32 context)
{
    visa_call_t call(session);
    const auto verdict = begin(call);
    return verdict ? *verdict : call.session->events.enable(type, mechanism, context);
}

ViStatus disable_event(ViSession session, ViEventType type, ViUInt16 mechanism)
{
    visa_call_t call(session);
    const auto verdict = begin(call);
    return verdict ? *verdict : call.session->events.disable(type, mechanism);
}

ViStatus discard_events(ViSession session, ViEventType type, ViUInt16 mechanism)
{
    visa_call_t call(session);
    const auto verdict = begin(call);
    return verdict ? *verdict : call.session->events.discard(type, mechanism);
}

ViStatus wait_on_event(ViSession session, ViEventType type, ViUInt32 timeout_ms,
                       ViEventType *found_type, ViEvent *context)
{
    if (found_type != nullptr)
        *found_type = 0;
    if (context != nullptr)
        *context = null_object;
    visa_call_t call(session);
    if (const auto refusal = begin(call))
        return *refusal;
    const ViStatus verdict = call.session->events.wait_verdict(type);
    if (verdict != success)
        return verdict;
    const bus_time_t deadline = deadline_after(timeout_ms);
    while (!call.session->closed && bus_clock_t::now() < deadline)
        call.world.closing.wait_until(
            call.lock, std::min(deadline, bus_clock_t::now() + std::chrono::hours(1)));
    return call.session->closed ? error_invalid_object : error_timeout;
}

ViStatus install_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    visa_call_t call(session);
    const auto verdict = begin(call);
    return verdict ? *verdict : call.session->events.install(type, handler, user_handle);
}

ViStatus uninstall_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    visa_call_t call(session);
    const auto verdict = begin(call);
    return verdict ? *verdict : call.session->events.uninstall(type, handler, user_handle);
}

} // namespace visa::operations
