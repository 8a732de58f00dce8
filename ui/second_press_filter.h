// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Keeps the second press of a double-click from the button on which it is installed, so that a
/// double-click is one click.
class second_press_filter_t final : public QObject
{
public:
    explicit second_press_filter_t(QObject *parent);

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    /// When the last press came to the button, in milliseconds of the window system's time.
    ulong press_ms = 0;
};
