// SPDX-License-Identifier: MIT
#include "ui/ui_port_widget.h"

#include "ui/port_group.h"
#include "ui/ui_empty_widget.h"

#include <QGroupBox>
#include <QHBoxLayout>

namespace {

constexpr int panel_width = 948;
constexpr int panel_height = 205;

} // namespace

ui_port_widget_t::ui_port_widget_t(QWidget *parent) : QFrame(parent)
{
    QGroupBox *const group = build_port_group(this);
    auto *const panel = new ui_empty_widget_t(group);
    panel->setObjectName(QStringLiteral("emptyWidget"));
    panel->setStyleSheet(picture_style(QString::fromLatin1(panel->metaObject()->className()),
                                       panel->objectName(), QStringLiteral(":/image/panel_1.png")));
    panel->setFixedSize(panel_width, panel_height);
    group->layout()->addWidget(panel);

    auto *const frame_layout = new QHBoxLayout(this);
    frame_layout->setContentsMargins(0, 0, 0, 0);
    frame_layout->addWidget(group);
    frame_layout->addStretch(1);
}
