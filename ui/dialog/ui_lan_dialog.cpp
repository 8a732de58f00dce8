// SPDX-License-Identifier: MIT
#include "ui/dialog/ui_lan_dialog.h"

#include "drv/drv_command.h"
#include "ui/dialog/dialog_layout.h"
#include "ui/instrument_traffic.h"
#include "ui/widget/q_ip_line_edit.h"
#include "ui/widget/ui_combo_box.h"
#include "ui/widget/ui_line_edit.h"
#include "ui/widget/ui_push_button.h"

#include <QFormLayout>

namespace {

enum mode_index_t { dhcp_mode = 0, fixed_ip_mode = 1 };

constexpr char dhcp_flag[] = "1";
constexpr char fixed_ip_flag[] = "0";

} // namespace

struct ui_lan_dialog_t::address_row_t
{
    const char *label;
    QIPLineEdit *ui_lan_dialog_t::*editor;
    std::string lan_settings_t::*setting;
};

struct ui_lan_dialog_t::text_row_t
{
    const char *label;
    ui_line_edit_t *ui_lan_dialog_t::*editor;
    std::string lan_settings_t::*setting;
};

const std::array<ui_lan_dialog_t::address_row_t, 3> &ui_lan_dialog_t::address_rows()
{
    static const std::array<address_row_t, 3> table{{
        {QT_TR_NOOP("IP Address:"), &ui_lan_dialog_t::ip_edit, &lan_settings_t::ip_address},
        {QT_TR_NOOP("Subnet Mask:"), &ui_lan_dialog_t::mask_edit, &lan_settings_t::subnet_mask},
        {QT_TR_NOOP("Standard Gateway:"), &ui_lan_dialog_t::gateway_edit, &lan_settings_t::gateway},
    }};
    return table;
}

const std::array<ui_lan_dialog_t::text_row_t, 2> &ui_lan_dialog_t::text_rows()
{
    static const std::array<text_row_t, 2> table{{
        {QT_TR_NOOP("Hostname:"), &ui_lan_dialog_t::host_edit, &lan_settings_t::host_name},
        {QT_TR_NOOP("Mac Address:"), &ui_lan_dialog_t::mac_edit, &lan_settings_t::mac_address},
    }};
    return table;
}

ui_lan_dialog_t::ui_lan_dialog_t(QWidget *parent) : QDialog(parent)
{
    create_widgets();
    set_group_layout(this, tr("LAN Settings"), build_rows());
    connect(refresh_btn, SIGNAL(clicked(bool)), this, SLOT(show_lan_setting_slot()));
    connect(apply_btn, SIGNAL(clicked(bool)), this, SLOT(apply_lan_setting_slot()));
}

/// In the order in which the Tab key visits them.
void ui_lan_dialog_t::create_widgets()
{
    mode_box = new ui_combo_box_t(this);
    mode_box->addItem(tr("DHCP"));
    mode_box->addItem(tr("Fixed IP"));
    for (const address_row_t &row : address_rows())
        this->*row.editor = new QIPLineEdit(this);
    for (const text_row_t &row : text_rows())
        this->*row.editor = new ui_line_edit_t(this);
    mac_edit->setReadOnly(true);
    mac_edit->setEnabled(false);
    refresh_btn = new ui_push_button_t(this);
    refresh_btn->setText(tr("Refresh"));
    apply_btn = new ui_push_button_t(this);
    apply_btn->setText(tr("Apply"));
}

QBoxLayout *ui_lan_dialog_t::build_rows()
{
    auto *const form = new QFormLayout;
    form->addRow(tr("IP Setting"), mode_box);
    for (const address_row_t &row : address_rows())
        form->addRow(tr(row.label), this->*row.editor);
    for (const text_row_t &row : text_rows())
        form->addRow(tr(row.label), this->*row.editor);
    return layout_above_buttons(form, {refresh_btn, apply_btn});
}

void ui_lan_dialog_t::show_lan_setting_slot()
{
    const instrument_traffic_t traffic;
    lan_settings_t settings;
    drv_command_t::instance()->lan_read(settings);
    mode_box->setCurrentIndex(settings.dhcp == fixed_ip_flag ? fixed_ip_mode : dhcp_mode);
    for (const address_row_t &row : address_rows())
        (this->*row.editor)->setText(QString::fromStdString(settings.*row.setting));
    for (const text_row_t &row : text_rows())
        (this->*row.editor)->show_from_start(QString::fromStdString(settings.*row.setting));
}

void ui_lan_dialog_t::apply_lan_setting_slot()
{
    lan_settings_t settings;
    settings.dhcp = mode_box->currentIndex() == dhcp_mode ? dhcp_flag : fixed_ip_flag;
    for (const address_row_t &row : address_rows())
        settings.*row.setting = (this->*row.editor)->text().toStdString();
    // The MAC address is the instrument's own and not for setting.
    settings.host_name = host_edit->text().toStdString();
    const instrument_traffic_t traffic;
    drv_command_t::instance()->lan_apply(settings);
}
