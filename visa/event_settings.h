// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

#include <utility>
#include <vector>

namespace visa {

/// What a session wants to hear of service requests, the one event that its resources know
/// (VPP-4.3, chapter 3.7). Each function answers as the entry point of the same name does.
class event_settings_t
{
public:
    ViStatus enable(ViEventType type, ViUInt16 mechanism, ViUInt32 context);
    ViStatus disable(ViEventType type, ViUInt16 mechanism);
    ViStatus discard(ViEventType type, ViUInt16 mechanism) const;

    /// Whether events of a type can be waited for.
    ViStatus wait_verdict(ViEventType type) const;

    ViStatus install(ViEventType type, ViHndlr handler, ViAddr user_handle);
    ViStatus uninstall(ViEventType type, ViHndlr handler, ViAddr user_handle);

private:
    ViStatus enable_verdict(ViEventType type, ViUInt16 mechanism, ViUInt32 context) const;

    ViUInt16 mechanisms = 0; ///< the enabled ones
    std::vector<std::pair<ViHndlr, ViAddr>> handlers;
};

} // namespace visa
