// SPDX-License-Identifier: MIT
#pragma once

/// Height in pixels that the widgets of the kit share, so that they line up in every row.
constexpr int widget_height = 28;
