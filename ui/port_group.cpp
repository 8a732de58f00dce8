// SPDX-License-Identifier: MIT
#include "ui/port_group.h"

#include <QCoreApplication>
#include <QGroupBox>
#include <QVBoxLayout>

namespace {

constexpr int group_margin = 6;

} // namespace

QGroupBox *build_port_group(QWidget *frame)
{
    auto *const group = new QGroupBox(QCoreApplication::translate("port_frame_t", "PORT"), frame);
    auto *const group_layout = new QVBoxLayout(group);
    group_layout->setContentsMargins(group_margin, group_margin, group_margin, group_margin);
    return group;
}

QString picture_style(const QString &class_name, const QString &object_name, const QString &picture)
{
    return QStringLiteral("%1#%2{border-image:url(%3)}").arg(class_name, object_name, picture);
}
