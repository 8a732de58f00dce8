// SPDX-License-Identifier: MIT
#include "ui/widget/ui_focus_ring.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPainter>

namespace {

/// Outside the widget; it just fits between two port buttons.
constexpr int ring_width_px = 2;
const QColor ring_color(0xe6, 0xe6, 0xe6);

class ring_t final : public QWidget
{
public:
    explicit ring_t(QWidget *window) : QWidget(window)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    /// Needs no style, so that no style sheet has a say in it.
    void paintEvent(QPaintEvent * /*event*/) override
    {
        constexpr qreal middle = ring_width_px / 2.0;
        QPainter painter(this);
        painter.setPen(
            QPen(ring_color, ring_width_px, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(QRectF(rect()).adjusted(middle, middle, -middle, -middle));
    }
};

bool shows_its_focus(const QWidget &widget)
{
    return qobject_cast<const QLineEdit *>(&widget) != nullptr ||
           qobject_cast<const QMenuBar *>(&widget) != nullptr ||
           widget.window()->windowType() == Qt::Popup;
}

/// The part of a widget that its ancestors do not cut off, in its window's coordinates.
QRect seen_part(const QWidget &widget)
{
    const QWidget *const window = widget.window();
    QRect part(widget.mapTo(window, QPoint(0, 0)), widget.size());
    for (const QWidget *parent = widget.parentWidget(); parent != nullptr && parent != window;
         parent = parent->parentWidget())
        part &= QRect(parent->mapTo(window, QPoint(0, 0)), parent->size());
    return part;
}

bool moves_widgets(QEvent::Type type)
{
    switch (type) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::EnabledChange:
    case QEvent::ParentChange:
        return true;
    default:
        return false;
    }
}

} // namespace

ui_focus_ring_t::ui_focus_ring_t(QObject *parent) : QObject(parent)
{
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this] { place(); });
}

bool ui_focus_ring_t::eventFilter(QObject *object, QEvent *event)
{
    const bool key = event->type() == QEvent::KeyPress;
    if (key || event->type() == QEvent::MouseButtonPress) {
        if (keyboard_used != key) {
            keyboard_used = key;
            place();
        }
    } else if (keyboard_used && moves_widgets(event->type()) && object->isWidgetType()) {
        const auto *const moved = static_cast<const QWidget *>(object);
        const QWidget *const focused = QApplication::focusWidget();
        if (focused != nullptr && (moved == focused || moved->isAncestorOf(focused)))
            place();
    }
    return QObject::eventFilter(object, event);
}

void ui_focus_ring_t::place()
{
    QWidget *const widget = QApplication::focusWidget();
    const bool wanted = keyboard_used && widget != nullptr && widget->isVisible() &&
                        widget->isEnabled() && !shows_its_focus(*widget);
    if (!wanted) {
        if (ring != nullptr)
            ring->hide();
        return;
    }
    if (ring == nullptr || ring->parentWidget() != widget->window()) {
        delete ring;
        ring = new ring_t(widget->window());
    }
    const QRect part = seen_part(*widget);
    ring->setGeometry(part.adjusted(-ring_width_px, -ring_width_px, ring_width_px, ring_width_px));
    ring->setVisible(!part.isEmpty());
    ring->raise();
}
