// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QMovie>

/// A busy indicator: the waiting animation, running from the start.
class ui_waiting_dialog_t : public QDialog
{
    Q_OBJECT

public:
    explicit ui_waiting_dialog_t(QWidget *parent);

private:
    QMovie movie;
};
