// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

/// The group box "PORT" around the blank front panel, which keeps its size at the left.
class ui_port_widget_t : public QFrame
{
    Q_OBJECT

public:
    explicit ui_port_widget_t(QWidget *parent);
};
