// SPDX-License-Identifier: MIT
#include "visa_io/session_call.h"

namespace visa_io {

session_call_t::session_call_t(ViObject number)
    : world(world_t::instance()), guard(world.mutex), handle(number)
{
    session = world.objects.session(number);
}

ViStatus session_call_t::refusal() const
{
    return world.objects.is_known(handle) ? visa::error_operation_not_supported
                                          : visa::error_invalid_object;
}

ViStatus session_call_t::lock(ViAccessMode kind, const std::string &key, ViUInt32 timeout_ms)
{
    const deadline_t latest = deadline_after(timeout_ms);
    session_t &its = *session;
    for (;;) {
        if (its.closed)
            return visa::error_invalid_object;
        const auto verdict = kind == visa::access_exclusive_lock ? its.lock->take_exclusive(&its)
                                                                 : its.lock->take_shared(&its, key);
        if (verdict)
            return *verdict == visa::success ? its.lock->held_by(&its).status_of_lock(kind)
                                             : *verdict;
        if (timeout_ms == visa::timeout_immediate)
            return visa::error_resource_locked;
        if (io_clock_t::now() >= latest)
            return visa::error_timeout;
        world.wait(guard, latest);
    }
}

link_call_t::link_call_t(ViSession number) : call(number), refused(begin())
{
    call.guard.unlock();
}

ViStatus link_call_t::begin()
{
    if (!call)
        return call.refusal();
    session_t &session = *call.session;
    settings = session.attributes;
    latest = deadline_after(settings.timeout_ms);
    while (session.busy && !session.closed && io_clock_t::now() < latest)
        call.world.wait(call.guard, latest);
    if (session.closed)
        return visa::error_invalid_object;
    if (session.busy)
        return visa::error_timeout;
    if (!session.lock->allows(&session))
        return visa::error_resource_locked;
    session.busy = true;
    return visa::success;
}

link_call_t::~link_call_t()
{
    if (refused != visa::success)
        return;
    const world_t::guard_t guard(call.world.mutex);
    call.session->busy = false;
    call.world.changed.notify_all();
}

ViStatus link_call_t::answer(ViStatus outcome)
{
    const world_t::guard_t guard(call.world.mutex);
    return call.session->closed ? visa::error_invalid_object : outcome;
}

} // namespace visa_io
