// SPDX-License-Identifier: MIT
#include "ui/widget/ui_combo_widget.h"

#include "ui/widget/ui_combo_box.h"

#include <QVBoxLayout>

ui_combo_widget_t::ui_combo_widget_t(QWidget *parent)
    : QFrame(parent), combo(new ui_combo_box_t(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(combo);
}
