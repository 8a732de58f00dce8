// SPDX-License-Identifier: MIT
#include "ui/port_frame.h"

#include "ui/port_control.h"
#include "ui/port_group.h"

#include <QGroupBox>
#include <QVBoxLayout>

port_frame_t::port_frame_t(QWidget *parent) : QFrame(parent), group(build_port_group(this))
{
    auto *const frame_layout = new QVBoxLayout(this);
    frame_layout->setContentsMargins(0, 0, 0, 0);
    frame_layout->addWidget(group);
}

port_control_t *port_frame_t::control_widget()
{
    if (control == nullptr) {
        control = make_control(group);
        group->layout()->addWidget(control);
    }
    return control;
}
