// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"
#include "visa/visa_types.h"

/// What entry points answer whatever the instruments are.
namespace visa {

/// What viParseRsrcEx stores of a name; the three texts may be null.
ViStatus describe_resource(const char *name, ViUInt16 *interface_type, ViUInt16 *interface_number,
                           char *resource_class, char *full_name, char *alias);

/// The verdict of viFlush on a mask: the buffers of formatted I/O are always empty.
ViStatus flush_verdict(ViUInt16 mask);

/// Sets the sizes that the attributes of the formatted I/O buffers report, as viSetBuf does.
ViStatus set_buffer_size(object_attributes_t &attributes, ViUInt16 mask, ViUInt32 size);

/// Describes a status in words, as viStatusDesc does.
ViStatus describe_status(ViStatus status, char *text);

} // namespace visa
