// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

/// Events: the behaviour of the entry points of the same names (VPP-4.3, chapter 3.7). A session
/// can be told of service requests. The instruments make none, so that queues stay empty, waits end
/// in the time-out and handlers are never called.
namespace sim::visa {

ViStatus enable_event(ViSession session, ViEventType type, ViUInt16 mechanism, ViUInt32 context);
ViStatus disable_event(ViSession session, ViEventType type, ViUInt16 mechanism);
ViStatus discard_events(ViSession session, ViEventType type, ViUInt16 mechanism);
ViStatus wait_on_event(ViSession session, ViEventType type, ViUInt32 timeout_ms,
                       ViEventType *found_type, ViEvent *context);
ViStatus install_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle);

/// A null handler stands for all handlers with the user handle.
ViStatus uninstall_handler(ViSession session, ViEventType type, ViHndlr handler,
                           ViAddr user_handle);

} // namespace sim::visa
