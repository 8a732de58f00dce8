// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QGroupBox;
class QWidget;

/// A group box titled "PORT" in `frame`; its layout takes one panel, whose parent it should be from
/// the beginning: a widget that gets another parent is styled again.
QGroupBox *build_port_group(QWidget *frame);

/// The style sheet that makes a picture the border image of one widget, known by its class and its
/// object name, so that no widget inside inherits it.
QString picture_style(const QString &class_name, const QString &object_name,
                      const QString &picture);
