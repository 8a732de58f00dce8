// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QGroupBox;
class QWidget;

/// A group box titled "PORT" in `frame`; its layout takes one panel, whose parent it should be from
/// the beginning: a widget that gets another parent is styled again.
QGroupBox *build_port_group(QWidget *frame);

/// Makes `picture` the border image of `widget`, which must have an object name, so that no widget
/// inside inherits it.
void set_panel_picture(QWidget *widget, const QString &picture);
