// SPDX-License-Identifier: MIT
#include "ui/widget/ui_combo_box.h"

#include "ui/widget/widget_height.h"

#include <QAbstractItemView>
#include <QIcon>
#include <QScroller>
#include <QStyledItemDelegate>

namespace {

struct color_item_t
{
    const char *text;
    const char *icon;
};

constexpr color_item_t color_items[] = {
    {"Cyan", ":/image/cyan.ico"},
    {"Blue", ":/image/blue.ico"},
    {"Red", ":/image/red.ico"},
    {"Green", ":/image/green.ico"},
};

} // namespace

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

void ui_combo_box_t::add_color_items()
{
    for (const color_item_t &item : color_items)
        addItem(QIcon(QLatin1String(item.icon)), QLatin1String(item.text));
}
