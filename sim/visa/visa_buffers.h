// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

/// What ordinary programs call although formatted I/O is not here: viFlush, viSetBuf (VPP-4.3,
/// chapter 6.2), and viStatusDesc (chapter 3.3).
namespace sim::visa {

/// The buffers of formatted I/O are always empty, so that a valid mask is all it takes.
ViStatus flush_buffers(ViSession session, ViUInt16 mask);

/// Sets the sizes that the attributes of the formatted I/O buffers report.
ViStatus set_buffer_size(ViSession session, ViUInt16 mask, ViUInt32 size);

/// Describes a status in words, 256 bytes at most, whatever the object is.
ViStatus describe_status(ViObject object, ViStatus status, char *text);

} // namespace sim::visa
