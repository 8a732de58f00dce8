// SPDX-License-Identifier: MIT
#include "ui/dialog/ui_color_dialog.h"

#include "drv/drv_command.h"
#include "ui/dialog/dialog_layout.h"
#include "ui/instrument_traffic.h"
#include "ui/led_color.h"
#include "ui/widget/ui_combo_box.h"
#include "ui/widget/ui_push_button.h"

#include <QFormLayout>

#include <string>

namespace {

/// The index of the colour that the instrument reports; a reply that is no colour, or none at all,
/// shows the first one.
int color_index(const std::string &reported)
{
    const led_color_t *const color = find_led_color(reported);
    return color != nullptr ? static_cast<int>(color - led_colors.data()) : 0;
}

} // namespace

/// A VNA port: its letter, its combo box and the index of the colour that it is delivered with.
struct ui_color_dialog_t::row_t
{
    const char *letter;
    const char *label;
    ui_combo_box_t *ui_color_dialog_t::*combo;
    const char *slot;
    int default_index;
};

const std::array<ui_color_dialog_t::row_t, 4> &ui_color_dialog_t::rows()
{
    static const std::array<row_t, 4> table{{
        {"A", QT_TR_NOOP("Color VNA Port A:"), &ui_color_dialog_t::combo_a,
         SLOT(colorA_change_slot()), 0},
        {"B", QT_TR_NOOP("Color VNA Port B:"), &ui_color_dialog_t::combo_b,
         SLOT(colorB_change_slot()), 1},
        {"C", QT_TR_NOOP("Color VNA Port C:"), &ui_color_dialog_t::combo_c,
         SLOT(colorC_change_slot()), 2},
        {"D", QT_TR_NOOP("Color VNA Port D:"), &ui_color_dialog_t::combo_d,
         SLOT(colorD_change_slot()), 3},
    }};
    return table;
}

ui_color_dialog_t::ui_color_dialog_t(int port_count, QWidget *parent)
    : QDialog(parent), vna_port_count(port_count)
{
    for (const row_t &row : rows())
        this->*row.combo = new ui_combo_box_t(this);
    default_btn = new ui_push_button_t(this);
    default_btn->setText(tr("Default"));
    for (const row_t &row : rows())
        (this->*row.combo)->add_color_items();
    // Before anything is connected: what is read must not be sent back.
    load_current_colors();
    build_layout();
    connect_widgets();
}

std::size_t ui_color_dialog_t::available_rows() const noexcept
{
    return vna_port_count == 4 ? 4 : 2;
}

void ui_color_dialog_t::load_current_colors()
{
    const instrument_traffic_t traffic;
    for (std::size_t index = 0; index < rows().size(); ++index) {
        const row_t &row = rows().at(index);
        ui_combo_box_t *const combo = this->*row.combo;
        if (index >= available_rows()) {
            combo->setEnabled(false);
            continue;
        }
        std::string color;
        drv_command_t::instance()->get_color(row.letter, color);
        combo->setCurrentIndex(color_index(color));
    }
}

void ui_color_dialog_t::build_layout()
{
    auto *const form = new QFormLayout;
    for (const row_t &row : rows())
        form->addRow(tr(row.label), this->*row.combo);
    set_group_layout(this, tr("Port-LED Settings"), layout_above_buttons(form, {default_btn}));
}

void ui_color_dialog_t::connect_widgets()
{
    connect(default_btn, SIGNAL(clicked(bool)), this, SLOT(apply_default_color_slot()));
    for (const row_t &row : rows())
        connect(this->*row.combo, SIGNAL(currentIndexChanged(int)), this, row.slot);
}

/// The item text goes out as it stands.
void ui_color_dialog_t::send_color(const row_t &row)
{
    const instrument_traffic_t traffic;
    const QString color = (this->*row.combo)->currentText();
    drv_command_t::instance()->set_color(row.letter, color.toStdString());
}

void ui_color_dialog_t::apply_default_color_slot()
{
    const instrument_traffic_t traffic;
    // A colour that changes here is sent by its own slot already, also for a disabled port.
    for (const row_t &row : rows())
        (this->*row.combo)->setCurrentIndex(row.default_index);
    for (std::size_t index = 0; index < available_rows(); ++index)
        send_color(rows().at(index));
}

void ui_color_dialog_t::colorA_change_slot()
{
    send_color(rows()[0]);
}

void ui_color_dialog_t::colorB_change_slot()
{
    send_color(rows()[1]);
}

void ui_color_dialog_t::colorC_change_slot()
{
    send_color(rows()[2]);
}

void ui_color_dialog_t::colorD_change_slot()
{
    send_color(rows()[3]);
}
