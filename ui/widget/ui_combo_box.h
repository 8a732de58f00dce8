// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

/// Combo box of the kit's height whose popup is drawn by the style sheet (rounded corners, item
/// rules) and scrolls by dragging. The wheel scrolls the popup and does nothing while it is closed.
class ui_combo_box_t : public QComboBox
{
    Q_OBJECT

public:
    explicit ui_combo_box_t(QWidget *parent = nullptr);
    ~ui_combo_box_t() override;

    /// Appends the four Port-LED colours with their icons: Cyan, Blue, Red, Green. The texts are
    /// what the instrument is sent.
    void add_color_items();

protected:
    void wheelEvent(QWheelEvent *event) override;
};
