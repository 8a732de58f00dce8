// SPDX-License-Identifier: MIT
#include "ui/products.h"

#include "ui/port_panels.h"

namespace {

template <typename frame_t>
port_frame_t *make_frame(QWidget *parent)
{
    return new frame_t(parent);
}

} // namespace

const std::array<product_t, 5> products{{
    {21, make_frame<ui_21port_widget_t>},
    {22, make_frame<ui_22port_widget_t>},
    {24, make_frame<ui_24port_widget_t>},
    {44, make_frame<ui_44port_widget_t>},
    {42, make_frame<ui_42port_widget_t>},
}};
