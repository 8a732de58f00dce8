// SPDX-License-Identifier: MIT
#include "visa/common_answers.h"
#include "visa/find_list.h"
#include "visa/operations.h"
#include "visa_io/session_call.h"

#include <optional>
#include <string>

namespace visa::operations {

using namespace visa_io;

namespace {

/// An operation on a session for which its instrument is not asked.
template <typename operation_t>
ViStatus on_session(ViSession session, operation_t operation)
{
    session_call_t call(session);
    return call ? operation(call) : call.refusal();
}

} // namespace

ViStatus lock_session(ViSession session, ViAccessMode kind, ViUInt32 timeout_ms,
                      const char *requested_key, char *access_key)
{
    const auto key = lock_key(kind, requested_key);
    return on_session(session, [&](session_call_t &call) {
        if (kind != access_exclusive_lock && kind != access_shared_lock)
            return error_invalid_lock_type;
        if (!key)
            return error_invalid_access_key;
        const ViStatus status = call.lock(kind, *key, timeout_ms);
        if (status >= success && kind == access_shared_lock)
            store_text(access_key, call.session->lock->held_by(call.session.get()).key);
        return status;
    });
}

ViStatus unlock_session(ViSession session)
{
    return on_session(session, [](session_call_t &call) {
        resource_lock_t &lock = *call.session->lock;
        const ViStatus status = lock.give_back(call.session.get());
        call.world.changed.notify_all();
        return status == success ? lock.held_by(call.session.get()).status_of_unlock() : status;
    });
}

ViStatus enable_event(ViSession session, ViEventType type, ViUInt16 mechanism, ViUInt32 context)
{
    return on_session(session, [=](session_call_t &call) {
        return call.session->events.enable(type, mechanism, context);
    });
}

ViStatus disable_event(ViSession session, ViEventType type, ViUInt16 mechanism)
{
    return on_session(session, [=](session_call_t &call) {
        return call.session->events.disable(type, mechanism);
    });
}

ViStatus discard_events(ViSession session, ViEventType type, ViUInt16 mechanism)
{
    return on_session(session, [=](session_call_t &call) {
        return call.session->events.discard(type, mechanism);
    });
}

ViStatus wait_on_event(ViSession session, ViEventType type, ViUInt32 timeout_ms,
                       ViEventType *found_type, ViEvent *context)
{
    if (found_type != nullptr)
        *found_type = 0;
    if (context != nullptr)
        *context = null_object;
    return on_session(session, [=](session_call_t &call) {
        const deadline_t latest = deadline_after(timeout_ms);
        ViStatus verdict = call.session->events.wait_verdict(type);
        while (verdict == success) {
            if (call.session->closed)
                verdict = error_invalid_object;
            else if (io_clock_t::now() >= latest)
                verdict = error_timeout;
            else
                call.world.wait(call.guard, latest);
        }
        return verdict;
    });
}

ViStatus install_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    return on_session(session, [=](session_call_t &call) {
        return call.session->events.install(type, handler, user_handle);
    });
}

ViStatus uninstall_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    return on_session(session, [=](session_call_t &call) {
        return call.session->events.uninstall(type, handler, user_handle);
    });
}

ViStatus flush_buffers(ViSession session, ViUInt16 mask)
{
    return on_session(session, [=](session_call_t & /*call*/) { return flush_verdict(mask); });
}

ViStatus set_buffer_size(ViSession session, ViUInt16 mask, ViUInt32 size)
{
    return on_session(session, [=](session_call_t &call) {
        return ::visa::set_buffer_size(call.session->attributes, mask, size);
    });
}

ViStatus describe_status(ViObject /*object*/, ViStatus status, char *text)
{
    return ::visa::describe_status(status, text);
}

} // namespace visa::operations
