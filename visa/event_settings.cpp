// SPDX-License-Identifier: MIT
#include "visa/event_settings.h"

#include <algorithm>

namespace visa {

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

ViStatus verdict_on(ViEventType type, ViUInt16 mechanism)
{
    if (!is_known_event(type))
        return error_invalid_event;
    return is_mechanism_set(mechanism) ? success : error_invalid_mechanism;
}

} // namespace

ViStatus event_settings_t::enable_verdict(ViEventType type, ViUInt16 mechanism,
                                          ViUInt32 context) const
{
    constexpr ViUInt16 both_handlers = mechanism_handler | mechanism_suspended_handler;
    const ViUInt16 wanted = mechanism & both_handlers;
    if (type != event_service_request)
        return error_invalid_event;
    if (mechanism == all_mechanisms || !is_mechanism_set(mechanism) || wanted == both_handlers)
        return error_invalid_mechanism;
    if (context != null_object)
        return error_invalid_context;
    if (wanted != 0 && handlers.empty())
        return error_handler_not_installed;
    return success;
}

ViStatus event_settings_t::enable(ViEventType type, ViUInt16 mechanism, ViUInt32 context)
{
    const ViStatus verdict = enable_verdict(type, mechanism, context);
    if (verdict != success)
        return verdict;
    const bool was_enabled = (mechanisms & mechanism) != 0;
    // Handlers are called or suspended.
    if ((mechanism & mechanism_handler) != 0)
        mechanisms &= static_cast<ViUInt16>(~mechanism_suspended_handler);
    if ((mechanism & mechanism_suspended_handler) != 0)
        mechanisms &= static_cast<ViUInt16>(~mechanism_handler);
    mechanisms |= mechanism;
    return was_enabled ? success_event_enabled : success;
}

ViStatus event_settings_t::disable(ViEventType type, ViUInt16 mechanism)
{
    const ViStatus verdict = verdict_on(type, mechanism);
    if (verdict != success)
        return verdict;
    const bool was_enabled = (mechanisms & mechanism) != 0;
    mechanisms &= static_cast<ViUInt16>(~mechanism);
    return was_enabled ? success : success_event_disabled;
}

ViStatus event_settings_t::discard(ViEventType type, ViUInt16 mechanism) const
{
    const ViStatus verdict = verdict_on(type, mechanism);
    return verdict == success ? success_queue_empty : verdict;
}

ViStatus event_settings_t::wait_verdict(ViEventType type) const
{
    if (!is_known_event(type))
        return error_invalid_event;
    return (mechanisms & mechanism_queue) == 0 ? error_not_enabled : success;
}

ViStatus event_settings_t::install(ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    if (type != event_service_request)
        return error_invalid_event;
    if (handler == nullptr)
        return error_invalid_handler_reference;
    handlers.emplace_back(handler, user_handle);
    return success;
}

ViStatus event_settings_t::uninstall(ViEventType type, ViHndlr handler, ViAddr user_handle)
{
    if (type != event_service_request)
        return error_invalid_event;
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

} // namespace visa
