// SPDX-License-Identifier: MIT
#include "ui/port_frame.h"

#include "ui/port_control.h"
#include "ui/port_group.h"

#include <QGroupBox>
#include <QVBoxLayout>

port_frame_t::port_frame_t(const char *control_class_name, make_control_t make_control,
                           QWidget *parent)
    : QFrame(parent)
{
    const QString object_name = QStringLiteral("portControlWidget");
    QGroupBox *const group = build_port_group(this);
    control = make_control(group, object_name,
                           picture_style(QString::fromLatin1(control_class_name), object_name,
                                         QStringLiteral(":/image/panel.png")));
    group->layout()->addWidget(control);

    auto *const frame_layout = new QVBoxLayout(this);
    frame_layout->setContentsMargins(0, 0, 0, 0);
    frame_layout->addWidget(group);
}
