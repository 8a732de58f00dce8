// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

/// Push button of the kit's height; its own class so that the style sheet can select it.
class ui_push_button_t : public QPushButton
{
    Q_OBJECT

public:
    explicit ui_push_button_t(QWidget *parent = nullptr);
};
