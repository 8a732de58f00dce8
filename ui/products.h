// SPDX-License-Identifier: MIT
#pragma once

#include <array>

class port_frame_t;
class QWidget;

/// A product that has a front panel.
struct product_t
{
    /// The product type that the instrument reports.
    int type;
    /// Makes the frame with the product's front panel. Which class that is, and which layout that
    /// panel has, is said in `port_panels.h`.
    port_frame_t *(*make_frame)(QWidget *parent);
};

/// All of them, in the order in which their panels lie in the main window.
extern const std::array<product_t, 5> products;
