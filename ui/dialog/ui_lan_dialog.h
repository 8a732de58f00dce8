// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <array>

class QBoxLayout;
class QIPLineEdit;
class ui_combo_box_t;
class ui_line_edit_t;
class ui_push_button_t;

/// Shows and changes the instrument's network settings. The fields are empty until they are
/// refreshed; neither reading nor applying reports a failure.
class ui_lan_dialog_t : public QDialog
{
    Q_OBJECT

public:
    explicit ui_lan_dialog_t(QWidget *parent);

public slots:
    /// Sends what the fields hold. Nothing is checked beyond what can be typed, and the fields are
    /// not read again.
    void apply_lan_setting_slot();
    /// Fills the fields from the instrument. If that fails, mode, host name and MAC address are
    /// shown as empty and the addresses stay.
    void show_lan_setting_slot();

private:
    struct address_row_t;
    struct text_row_t;
    static const std::array<address_row_t, 3> &address_rows();
    static const std::array<text_row_t, 2> &text_rows();

    void create_widgets();
    QBoxLayout *build_rows();

    ui_combo_box_t *mode_box = nullptr;
    QIPLineEdit *ip_edit = nullptr;
    QIPLineEdit *mask_edit = nullptr;
    QIPLineEdit *gateway_edit = nullptr;
    ui_line_edit_t *host_edit = nullptr;
    ui_line_edit_t *mac_edit = nullptr;
    ui_push_button_t *refresh_btn = nullptr;
    ui_push_button_t *apply_btn = nullptr;
};
