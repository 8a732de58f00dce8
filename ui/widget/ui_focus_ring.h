// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Draws a ring around whatever widget of the program the keyboard has reached, in its own window
/// and always in one neutral colour. A key shows the ring, a press of the mouse hides it; line
/// edits and popups show their focus themselves and have none.
///
/// One serves the whole application; it needs a `QApplication`.
class ui_focus_ring_t : public QObject
{
    Q_OBJECT

public:
    explicit ui_focus_ring_t(QObject *parent);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void place();

    /// Whether the user's last input was a key.
    bool keyboard_used = false;
    QPointer<QWidget> ring;
};
