// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

class ui_combo_box_t;

/// Frame that holds one combo box and adds no margin of its own.
class ui_combo_widget_t : public QFrame
{
    Q_OBJECT

public:
    explicit ui_combo_widget_t(QWidget *parent = nullptr);

    /// The combo box in the frame; never null.
    ui_combo_box_t *combo_box() const { return combo; }

private:
    ui_combo_box_t *combo;
};
