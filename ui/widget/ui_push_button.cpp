// SPDX-License-Identifier: MIT
#include "ui/widget/ui_push_button.h"

#include "ui/widget/widget_height.h"

ui_push_button_t::ui_push_button_t(QWidget *parent) : QPushButton(parent)
{
    setFixedHeight(widget_height);
}
