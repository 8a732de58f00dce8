// SPDX-License-Identifier: MIT
#include "ui/late_input_filter.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QTimerEvent>
#include <QWidget>
#include <QWindow>

namespace {

/// Turns of the event loop. Timers may come before the window system's events in a turn, so that
/// only the second turn can tell that the first one has handled them.
constexpr int turn_count = 2;
/// Between two turns; longer than Qt's reader thread takes to hand on what the X server has sent.
constexpr int turn_ms = 5;

/// Far from every widget, in a window and on the screen.
constexpr QPointF outside(-100'000, -100'000);

/// Ends a press without a click.
void release_outside(QWindow *window, const QMouseEvent &event)
{
    QMouseEvent release(event.type(), outside, outside, outside, event.button(), event.buttons(),
                        event.modifiers(), event.source());
    release.setTimestamp(event.timestamp());
    QCoreApplication::sendEvent(window, &release);
}

/// The same for a button that the keyboard holds down.
void release_focus_button(const QWindow *window)
{
    const QWidget *const top = QWidget::find(window->winId());
    QWidget *const focus = top != nullptr ? top->focusWidget() : nullptr;
    if (auto *const button = qobject_cast<QAbstractButton *>(focus))
        button->setDown(false);
}

} // namespace

late_input_filter_t::late_input_filter_t(QObject *parent) : QObject(parent) {}

void late_input_filter_t::discard_pending()
{
    turns_left = turn_count;
    turn_timer.start(turn_ms, this);
    QCoreApplication::instance()->installEventFilter(this);
}

bool late_input_filter_t::is_discarding() const noexcept
{
    return turns_left > 0;
}

/// At the windows, because the widgets' own state follows from what these pass on.
bool late_input_filter_t::eventFilter(QObject *receiver, QEvent *event)
{
    // What the program sends by itself, as in `release_outside`, is not input.
    auto *const window = qobject_cast<QWindow *>(receiver);
    if (window == nullptr || !event->spontaneous())
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return discard_press(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove:
        return (static_cast<QMouseEvent *>(event)->buttons() & lost_buttons) != 0;
    case QEvent::MouseButtonRelease:
        return discard_release(window, *static_cast<QMouseEvent *>(event));
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        return discard_key_press(*static_cast<QKeyEvent *>(event));
    case QEvent::KeyRelease:
        return discard_key_release(window, *static_cast<QKeyEvent *>(event));
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::NativeGesture:
        return is_discarding();
    default:
        return false;
    }
}

bool late_input_filter_t::discard_press(const QMouseEvent &event)
{
    // A second press without a release between: that one went elsewhere.
    lost_buttons.setFlag(event.button(), is_discarding());
    stop_when_done();
    return is_discarding();
}

bool late_input_filter_t::discard_release(QWindow *window, const QMouseEvent &event)
{
    const bool press_was_lost = lost_buttons.testFlag(event.button());
    lost_buttons.setFlag(event.button(), false);
    if (is_discarding() && !press_was_lost)
        release_outside(window, event);
    stop_when_done();
    return is_discarding() || press_was_lost;
}

/// A key that is held down repeats its press, and none of the repetitions was meant either.
bool late_input_filter_t::discard_key_press(const QKeyEvent &event)
{
    if (is_discarding())
        lost_keys.insert(event.key());
    else if (!event.isAutoRepeat())
        lost_keys.remove(event.key());
    stop_when_done();
    return lost_keys.contains(event.key());
}

bool late_input_filter_t::discard_key_release(const QWindow *window, const QKeyEvent &event)
{
    const bool press_was_lost = lost_keys.contains(event.key());
    if (!event.isAutoRepeat()) {
        const bool holds_button = event.key() == Qt::Key_Space || event.key() == Qt::Key_Select;
        if (holds_button && (is_discarding() || press_was_lost))
            release_focus_button(window);
        lost_keys.remove(event.key());
        stop_when_done();
    }
    return is_discarding() || press_was_lost;
}

void late_input_filter_t::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != turn_timer.timerId())
        return;
    if (--turns_left == 0) {
        turn_timer.stop();
        stop_when_done();
    }
}

void late_input_filter_t::stop_when_done()
{
    if (!is_discarding() && lost_buttons == Qt::NoButton && lost_keys.isEmpty())
        QCoreApplication::instance()->removeEventFilter(this);
}
