// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

/// Messages and replies: the behaviour of viWrite, viRead, viClear, viReadSTB and viAssertTrigger
/// (VPP-4.3, chapter 6). All of them are refused while another session has locked the resource.
namespace sim::visa {

/// Sends bytes to the instrument. They make a message when the session sends END, or when
/// they end in a line feed. A reply not read yet is lost to the new message (error -410).
ViStatus write_bytes(ViSession session, const ViUInt8 *bytes, ViUInt32 count, ViUInt32 *written);

/// Waits for a reply up to the session's time-out and hands out up to `count` bytes of it.
/// The rest stays for the next read. Reading when nothing was asked is error -420 on the
/// instrument and ends in the time-out.
ViStatus read_bytes(ViSession session, ViUInt8 *bytes, ViUInt32 count, ViUInt32 *bytes_read);

/// Empties both directions of the session; the instrument's state and errors stay.
ViStatus clear_session(ViSession session);

/// The status byte; bit 4 says that a reply can be read.
ViStatus read_status_byte(ViSession session, ViUInt16 *byte);

/// A trigger, which the instruments ignore: they have nothing that could be triggered.
ViStatus assert_trigger(ViSession session, ViUInt16 protocol);

} // namespace sim::visa
