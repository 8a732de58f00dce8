// SPDX-License-Identifier: MIT
#pragma once

/// Lets the calling thread sleep for `milliseconds`, and not much longer: systems round the end of
/// a sleep up by as much as a tick unless they are asked not to.
void pause_ms(unsigned long milliseconds);
