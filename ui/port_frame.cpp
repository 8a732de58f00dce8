// SPDX-License-Identifier: MIT
#include "ui/port_frame.h"

#include "ui/port_control.h"

#include <QGroupBox>
#include <QVBoxLayout>

namespace {

constexpr int group_margin = 6;

} // namespace

port_frame_t::port_frame_t(QWidget *parent) : QFrame(parent) {}

port_control_t *port_frame_t::control_widget() const noexcept
{
    return control;
}

void port_frame_t::set_control_widget(port_control_t *new_control)
{
    control = new_control;
    set_panel_picture(control, QStringLiteral("portControlWidget"),
                      QStringLiteral(":/image/panel.png"));

    auto *const frame_layout = new QVBoxLayout(this);
    frame_layout->setContentsMargins(0, 0, 0, 0);
    frame_layout->addWidget(build_port_group(control));
}

QGroupBox *build_port_group(QWidget *panel)
{
    auto *const group = new QGroupBox(port_frame_t::tr("PORT"));
    auto *const group_layout = new QVBoxLayout(group);
    group_layout->setContentsMargins(group_margin, group_margin, group_margin, group_margin);
    group_layout->addWidget(panel);
    return group;
}

void set_panel_picture(QWidget *widget, const QString &object_name, const QString &picture)
{
    widget->setObjectName(object_name);
    widget->setStyleSheet(
        QStringLiteral("%1#%2{border-image:url(%3)}")
            .arg(QString::fromLatin1(widget->metaObject()->className()), object_name, picture));
}
