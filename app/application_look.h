// SPDX-License-Identifier: MIT
#pragma once

/// Has Qt scale everything with the display, by exactly the factor that the display asks for. Qt
/// wants it said before there is a `QApplication`.
void scale_with_display();

/// Gives the application its look: style sheet, style, font and window icon, all from the
/// compiled-in resources, and the ring around what has the keyboard's focus. What cannot be loaded
/// is left out without a word.
///
/// Needs a `QApplication`; call it before the first window is made.
void apply_application_look();
