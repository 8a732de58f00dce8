// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <array>

class ui_combo_box_t;
class ui_push_button_t;

/// Shows the LED colour of each VNA port and sends a new one as soon as it is picked. Nothing is
/// reported: a colour that the instrument refuses shows when the port panel reads it back.
class ui_color_dialog_t : public QDialog
{
    Q_OBJECT

public:
    /// Reads the colours at once. With any other number of VNA ports than 4, "C" and "D" are shown
    /// disabled.
    ui_color_dialog_t(int vna_port_count, QWidget *parent);

public slots:
    /// Selects the colours that the instrument is delivered with and sends each once more, whether
    /// it changed or not.
    void apply_default_color_slot();
    void colorA_change_slot();
    void colorB_change_slot();
    void colorC_change_slot();
    void colorD_change_slot();

private:
    struct row_t;
    static const std::array<row_t, 4> &rows();

    std::size_t available_rows() const noexcept;
    void load_current_colors();
    void build_layout();
    void connect_widgets();
    void send_color(const row_t &row);

    ui_combo_box_t *combo_a = nullptr;
    ui_combo_box_t *combo_b = nullptr;
    ui_combo_box_t *combo_c = nullptr;
    ui_combo_box_t *combo_d = nullptr;
    ui_push_button_t *default_btn = nullptr;
    int vna_port_count;
};
