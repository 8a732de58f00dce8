// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/visa_types.h"

/// Resource manager, searches, sessions and attributes: the behaviour of the entry points of
/// the same names (VPP-4.3, chapters 3 and 4).
namespace sim::visa {

ViStatus open_default_manager(ViSession *manager);
ViStatus find_resources(ViSession manager, const char *expression, ViFindList *list,
                        ViUInt32 *count, char *name);
ViStatus find_next(ViFindList list, char *name);
ViStatus open_session(ViSession manager, const char *name, ViAccessMode mode, ViSession *session);
ViStatus close_object(ViObject object);
ViStatus set_object_attribute(ViObject object, ViAttr attribute, ViAttrState value);
ViStatus get_object_attribute(ViObject object, ViAttr attribute, void *value);

} // namespace sim::visa
