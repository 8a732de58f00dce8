// SPDX-License-Identifier: MIT
#pragma once

/// Gives the application its look: style sheet, style, font and window icon, all from the
/// compiled-in resources. What cannot be loaded is left out without a word.
///
/// Needs a `QApplication`; call it before the first window is made.
void apply_application_look();
