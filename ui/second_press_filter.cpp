// SPDX-License-Identifier: MIT
#include "ui/second_press_filter.h"

#include <QApplication>
#include <QMouseEvent>

second_press_filter_t::second_press_filter_t(QObject *parent) : QObject(parent) {}

bool second_press_filter_t::eventFilter(QObject * /*receiver*/, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick)
        return false;
    const ulong now_ms = static_cast<QMouseEvent *>(event)->timestamp();
    // The first press may have been discarded on its way; then this one is the first.
    const bool follows_press =
        now_ms - press_ms < static_cast<ulong>(QApplication::doubleClickInterval());
    if (event->type() == QEvent::MouseButtonDblClick && follows_press)
        return true;
    press_ms = now_ms;
    return false;
}
