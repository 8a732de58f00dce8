// SPDX-License-Identifier: MIT
#include "ui/widget/ui_combo_box.h"

#include "ui/led_color.h"
#include "ui/widget/widget_height.h"

#include <QAbstractItemView>
#include <QIcon>
#include <QScroller>
#include <QStyledItemDelegate>
#include <QWheelEvent>

ui_combo_box_t::ui_combo_box_t(QWidget *parent) : QComboBox(parent)
{
    setFixedHeight(widget_height);
    // The combo box's own delegate ignores the style sheet's item rules.
    setItemDelegate(new QStyledItemDelegate(this));

    view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    view()->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    QScroller::grabGesture(view()->viewport(), QScroller::LeftMouseButtonGesture);

    QWidget *popup = view()->window();
    popup->setWindowFlags(Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    popup->setAttribute(Qt::WA_TranslucentBackground);
}

ui_combo_box_t::~ui_combo_box_t()
{
    QScroller::ungrabGesture(view()->viewport());
}

/// Accepted, so that it does not scroll what is around the combo box either.
void ui_combo_box_t::wheelEvent(QWheelEvent *event)
{
    event->accept();
}

void ui_combo_box_t::add_color_items()
{
    for (const led_color_t &color : led_colors)
        addItem(QIcon(QLatin1String(color.icon)), QLatin1String(color.name));
}
