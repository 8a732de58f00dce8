// SPDX-License-Identifier: MIT
#include "ui/dialog/ui_scpi_dialog.h"

#include "drv/drv_command.h"
#include "ui/dialog/dialog_layout.h"
#include "ui/instrument_traffic.h"
#include "ui/widget/ui_line_edit.h"
#include "ui/widget/ui_push_button.h"

#include <QVBoxLayout>

#include <string>

ui_scpi_dialog_t::ui_scpi_dialog_t(QWidget *parent) : QDialog(parent)
{
    create_fields();
    create_buttons();
    set_group_layout(this, tr("Scpi Test "), build_rows());
}

void ui_scpi_dialog_t::create_fields()
{
    command_edit = new ui_line_edit_t(this);
    command_edit->setText(QStringLiteral("*IDN?"));
    command_edit->setAccessibleName(tr("Command"));
    reply_edit = new ui_line_edit_t(this);
    reply_edit->setReadOnly(true);
    reply_edit->setAccessibleName(tr("Reply"));
}

void ui_scpi_dialog_t::create_buttons()
{
    const struct
    {
        ui_push_button_t *&button;
        QString text;
        const char *slot;
    } rows[] = {
        {write_btn, tr("Write"), SLOT(write_btn_click_slot())},
        {query_btn, tr("Query"), SLOT(query_btn_click_slot())},
        {read_btn, tr("Read"), SLOT(read_btn_click_slot())},
    };
    for (const auto &row : rows) {
        row.button = new ui_push_button_t(this);
        row.button->setText(row.text);
        connect(row.button, SIGNAL(clicked(bool)), this, row.slot);
    }
    // What Return does in the fields; otherwise it would be the first button.
    query_btn->setDefault(true);
}

QBoxLayout *ui_scpi_dialog_t::build_rows()
{
    auto *const buttons = new QHBoxLayout;
    for (ui_push_button_t *const button : {write_btn, query_btn, read_btn})
        buttons->addWidget(button);
    auto *const rows = new QVBoxLayout;
    rows->addWidget(command_edit);
    rows->addWidget(reply_edit);
    rows->addLayout(buttons);
    return rows;
}

void ui_scpi_dialog_t::write_btn_click_slot()
{
    const instrument_traffic_t traffic;
    drv_command_t::instance()->send_command(command_edit->text().toStdString());
}

void ui_scpi_dialog_t::query_btn_click_slot()
{
    const instrument_traffic_t traffic;
    std::string reply;
    const bool answered =
        drv_command_t::instance()->query(command_edit->text().toStdString(), reply);
    reply_edit->show_from_start(answered ? QString::fromStdString(reply) : QString());
}

void ui_scpi_dialog_t::read_btn_click_slot()
{
    const instrument_traffic_t traffic;
    std::string reply;
    if (drv_command_t::instance()->read_reply(reply))
        reply_edit->show_from_start(QString::fromStdString(reply));
}
