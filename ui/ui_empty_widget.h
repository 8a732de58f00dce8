// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

/// The blank front panel that is shown while no known instrument is connected.
class ui_empty_widget_t : public QFrame
{
    Q_OBJECT

public:
    explicit ui_empty_widget_t(QWidget *parent);
};
