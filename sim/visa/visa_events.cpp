// SPDX-License-Identifier: MIT
#include "sim/visa/visa_events.h"

#include "sim/visa/visa_call.h"

#include <algorithm>

namespace sim::visa {

namespace {

constexpr ViUInt16 every_mechanism =
    mechanism_queue | mechanism_handler | mechanism_suspended_handler;

bool is_known_event(ViEventType type)
{
    return type == event_service_request || type == all_enabled_events;
}

bool is_mechanism_set(ViUInt16 mechanism)
{
    return mechanism == all_mechanisms || (mechanism != 0 && (mechanism & ~every_mechanism) == 0);
}

// Why events cannot be enabled so, or success.
ViStatus enable_verdict(const event_settings_t &events, ViEventType type, ViUInt16 mechanism,
                        ViUInt32 context)
{
    constexpr ViUInt16 both_handlers = mechanism_handler | mechanism_suspended_handler;
    const ViUInt16 handlers = mechanism & both_handlers;
    if (type != event_service_request)
        return error_invalid_event;
    if (mechanism == all_mechanisms || !is_mechanism_set(mechanism) || handlers == both_handlers)
        return error_invalid_mechanism;
    if (context != null_object)
        return error_invalid_context;
    if (handlers != 0 && events.handlers.empty())
        return error_handler_not_installed;
    return success;
}

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
    if (const auto verdict = begin(call))
        return *verdict;
    event_settings_t &events = call.session->events;
    const ViStatus verdict = enable_verdict(events, type, mechanism, context);
    if (verdict != success)
        return verdict;
    const bool was_enabled = (events.mechanisms & mechanism) != 0;
    // Handlers are called or suspended.
    if ((mechanism & mechanism_handler) != 0)
        events.mechanisms &= static_cast<ViUInt16>(~mechanism_suspended_handler);
    if ((mechanism & mechanism_suspended_handler) != 0)
        events.mechanisms &= static_cast<ViUInt16>(~mechanism_handler);
    events.mechanisms |= mechanism;
    return was_enabled ? success_event_enabled : success;
}

ViStatus disable_event(ViSession session, ViEventType type, ViUInt16 mechanism)
{
    visa_call_t call(session);
    if (const auto verdict = begin(call))
        return *verdict;
    if (!is_known_event(type))
        return error_invalid_event;
    if (!is_mechanism_set(mechanism))
        return error_invalid_mechanism;
    event_settings_t &events = call.session->events;
    const bool was_enabled = (events.mechanisms & mechanism) != 0;
    events.mechanisms &= static_cast<ViUInt16>(~mechanism);
    return was_enabled ? success : success_event_disabled;
}

ViStatus discard_events(ViSession session, ViEventType type, ViUInt16 mechanism)
{
    visa_call_t call(session);
    if (const auto verdict = begin(call))
        return *verdict;
    if (!is_known_event(type))
        return error_invalid_event;
    return is_mechanism_set(mechanism) ? success_queue_empty : error_invalid_mechanism;
}

ViStatus wait_on_event(ViSession session, ViEventType type, ViUInt32 timeout_ms,
                       ViEventType *found_type, ViEvent *context)
{
    if (found_type != nullptr)
        *found_type = 0;
    if (context != nullptr)
        *context = null_object;
    visa_call_t call(session);
    if (const auto verdict = begin(call))
        return *verdict;
    if (!is_known_event(type))
        return error_invalid_event;
    if ((call.session->events.mechanisms & mechanism_queue) == 0)
        return error_not_enabled;
    const bus_time_t deadline = deadline_after(timeout_ms);
    while (!call.session->closed && bus_clock_t::now() < deadline)
        call.world.closing.wait_until(
            call.lock, std::min(deadline, bus_clock_t::now() + std::chrono::hours(1)));
    return call.session->closed ? error_invalid_object : error_timeout;
}

ViStatus install_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    visa_call_t call(session);
    if (const auto verdict = begin(call))
        return *verdict;
    if (type != event_service_request)
        return error_invalid_event;
    if (handler == nullptr)
        return error_invalid_handler_reference;
    call.session->events.handlers.emplace_back(handler, user_handle);
    return success;
}

ViStatus uninstall_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    visa_call_t call(session);
    if (const auto verdict = begin(call))
        return *verdict;
    if (type != event_service_request)
        return error_invalid_event;
    auto &handlers = call.session->events.handlers;
    if (handlers.empty())
        return error_handler_not_installed;
    const auto first = std::remove_if(handlers.begin(), handlers.end(), [&](const auto &installed) {
        return (handler == nullptr || installed.first == handler) &&
               installed.second == user_handle;
    });
    if (first == handlers.end())
        return error_invalid_handler_reference;
    handlers.erase(first, handlers.end());
    return success;
}

} // namespace sim::visa
