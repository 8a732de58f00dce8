// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

/// Locks on resources: the behaviour of viLock and viUnlock (VPP-4.3, chapter 3.6).
namespace sim::visa {

/// Waits for the lock until the time-out. A shared lock is for the sessions that know its key: the
/// requested one, or a new one if that is null; `access_key` (256 bytes, may be null) becomes it.
ViStatus lock_session(ViSession session, ViAccessMode kind, ViUInt32 timeout_ms,
                      const char *requested_key, char *access_key);

/// Gives back one lock, an exclusive one first.
ViStatus unlock_session(ViSession session);

} // namespace sim::visa
