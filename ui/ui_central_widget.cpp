// SPDX-License-Identifier: MIT
#include "ui/ui_central_widget.h"

#include "ui/port_control.h"
#include "ui/port_frame.h"
#include "ui/products.h"
#include "ui/ui_connect_widget.h"
#include "ui/ui_port_widget.h"

#include <QVBoxLayout>

namespace {

constexpr int window_margin = 6;
constexpr int unknown_product_vna_ports = 2;

} // namespace

ui_central_widget_t::ui_central_widget_t(QWidget *parent)
    : QFrame(parent),
      connect_widget(new ui_connect_widget_t(this)),
      empty_panel(new ui_port_widget_t(this))
{
    auto *const rows = new QVBoxLayout(this);
    rows->setContentsMargins(window_margin, window_margin, window_margin, window_margin);
    rows->addWidget(connect_widget);
    rows->addWidget(empty_panel);
    add_port_frames();
    rows->addStretch(1);
    connect(connect_widget, SIGNAL(device_connect_msg(int)), this,
            SLOT(change_port_widget_slot(int)));
}

/// One is visible at a time.
void ui_central_widget_t::add_port_frames()
{
    for (const product_t &product : products) {
        port_frame_t *const frame = product.make_frame(this);
        port_frames.insert(product.type, frame);
        layout()->addWidget(frame);
        frame->hide();
    }
}

int ui_central_widget_t::vna_port_count() const noexcept
{
    return vna_ports;
}

void ui_central_widget_t::refresh()
{
    change_port_widget_slot(current_product_type);
}

void ui_central_widget_t::change_port_widget_slot(int product_type)
{
    current_product_type = product_type;
    port_frame_t *const shown = port_frames.value(product_type);
    vna_ports =
        shown != nullptr ? shown->control_widget()->vna_port_count() : unknown_product_vna_ports;

    // Hiding before showing keeps the window from growing to hold two panels at once.
    for (port_frame_t *const frame : qAsConst(port_frames))
        if (frame != shown)
            frame->hide();
    empty_panel->setVisible(shown == nullptr);
    if (shown == nullptr)
        return;
    shown->show();
    shown->control_widget()->device_connect_slot();
}
