// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_session.h"
#include "visa/object_attributes.h"

#include <memory>
#include <utility>
#include <vector>

namespace sim::visa {

using namespace ::visa;

/// What a session wants to hear of service requests, the one event that its resources know.
struct event_settings_t
{
    ViUInt16 mechanisms = 0; ///< the enabled ones
    std::vector<std::pair<ViHndlr, ViAddr>> handlers;
};

/// One open instrument session. Guarded by the world's mutex, but for the port, which guards
/// itself.
struct visa_session_t
{
    object_attributes_t attributes;
    event_settings_t events;
    std::shared_ptr<bus_session_t> port;
    bool closed = false; ///< for calls that wait while another thread closes the session
};

} // namespace sim::visa
