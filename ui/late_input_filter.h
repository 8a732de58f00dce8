// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QSet>

class QKeyEvent;
class QMouseEvent;
class QWindow;

/// Discards mouse, wheel and key input on its way to the program's windows; what touch screens and
/// pens send arrives as mouse input. GUI thread only.
///
/// Nothing is dispatched out of turn: the events are taken out as the event loop delivers them, so
/// that all others, such as those that paint or close a window, arrive as ever, and no slot runs
/// inside another.
class late_input_filter_t final : public QObject
{
public:
    explicit late_input_filter_t(QObject *parent);

    /// Discards what the event loop delivers until it has handled all that has come by now. The
    /// release of a button that was pressed before reaches its window, but outside of everything
    /// in it; what belongs to a press that was discarded is discarded whenever it comes.
    void discard_pending();

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    bool is_discarding() const noexcept;
    bool discard_press(const QMouseEvent &event);
    bool discard_release(QWindow *window, const QMouseEvent &event);
    bool discard_key_press(const QKeyEvent &event);
    bool discard_key_release(const QWindow *window, const QKeyEvent &event);
    void stop_when_done();

    QBasicTimer turn_timer;
    int turns_left = 0;
    /// What was pressed, and the press discarded, and is not released yet.
    Qt::MouseButtons lost_buttons = Qt::NoButton;
    QSet<int> lost_keys;
};
