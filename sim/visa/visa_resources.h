// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

/// Resource manager, searches, names, sessions and attributes: the behaviour of the entry points of
/// the same names (VPP-4.3, chapters 3 and 4).
namespace sim::visa {

ViStatus open_default_manager(ViSession *manager);
ViStatus find_resources(ViSession manager, const char *expression, ViFindList *list,
                        ViUInt32 *count, char *name);
ViStatus find_next(ViFindList list, char *name);

/// What a resource name says, whether there is such a resource or not. The three texts may be null:
/// viParseRsrc has none of them.
ViStatus parse_resource(ViSession manager, const char *name, ViUInt16 *interface_type,
                        ViUInt16 *interface_number, char *resource_class, char *full_name,
                        char *alias);

/// `timeout_ms` is for the lock that the access mode asks for; an instrument that is not there is
/// reported at once.
ViStatus open_session(ViSession manager, const char *name, ViAccessMode mode, ViUInt32 timeout_ms,
                      ViSession *session);
ViStatus close_object(ViObject object);
ViStatus set_object_attribute(ViObject object, ViAttr attribute, ViAttrState value);
ViStatus get_object_attribute(ViObject object, ViAttr attribute, void *value);

} // namespace sim::visa
