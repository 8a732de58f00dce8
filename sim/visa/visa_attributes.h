// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/visa_session.h"
#include "sim/visa/visa_types.h"

namespace sim::visa {

/// Stores an attribute of an instrument session as viGetAttribute does: as many bytes as
/// the attribute's own type has, texts with their zero byte (at most 256 bytes).
ViStatus get_attribute(const visa_session_t &session, ViAttr attribute, void *value);

/// Sets an attribute of an instrument session as viSetAttribute does.
ViStatus set_attribute(visa_session_t &session, ViAttr attribute, ViAttrState value);

/// Stores an attribute of a resource manager session.
ViStatus get_manager_attribute(ViAttr attribute, void *value);

} // namespace sim::visa
