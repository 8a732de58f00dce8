// SPDX-License-Identifier: MIT
#include "ui/port_veil.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

namespace {

/// Leaves a third of the contrast of a white text, and even of blue, the darkest, what can be seen.
const QColor veil_color(0x11, 0x11, 0x11, 150);

} // namespace

port_veil_t::port_veil_t(QWidget *panel) : QWidget(panel)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    panel->installEventFilter(this);
}

bool port_veil_t::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        resize(parentWidget()->size());
    return QWidget::eventFilter(object, event);
}

/// A widget that changes is painted again, and so is what lies over it.
void port_veil_t::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    for (const QWidget *const widget : qAsConst(watched))
        if (!widget->isEnabledTo(parentWidget()) && event->rect().intersects(widget->geometry()))
            painter.fillRect(widget->geometry(), veil_color);
}
