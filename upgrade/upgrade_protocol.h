// SPDX-License-Identifier: MIT
#pragma once

/// The instrument's side of an upgrade: readiness and reboots. For the upgrade thread, which has
/// the link to itself while it runs.

/// How often the instrument is asked whether it is ready.
constexpr int ready_attempts = 12;
/// The pause after a reboot command, before the instrument is sought again.
constexpr unsigned long reboot_pause_ms = 500;

/// Asks until the instrument answers that it takes the next transfer; false when none of the
/// attempts brought that answer, or the thread was asked to stop.
bool wait_ready();

/// Reboots the instrument and opens it again, or the first USB instrument that is found; true
/// when one is open.
bool reboot();

/// The same into the boot loader, which takes host images.
bool reboot_to_loader();
