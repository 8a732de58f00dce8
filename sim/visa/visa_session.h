// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_session.h"
#include "visa/event_settings.h"
#include "visa/object_attributes.h"

#include <memory>

namespace sim::visa {

using namespace ::visa;

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
