// SPDX-License-Identifier: MIT
#include "ui/dialog/ui_product_id_dialog.h"

#include "drv/drv_command.h"
#include "ui/dialog/dialog_layout.h"
#include "ui/instrument_traffic.h"
#include "ui/widget/ui_line_edit.h"
#include "ui/widget/ui_push_button.h"

#include <QFormLayout>
#include <QRegExpValidator>

namespace {

const QString product_family = QStringLiteral("TMX");
const QString unknown_product_code = QStringLiteral("99");
const QString default_serial_number = QStringLiteral("0123456789");

/// A line edit that takes only what matches the pattern.
ui_line_edit_t *create_field(const QString &pattern, QWidget *parent)
{
    auto *const field = new ui_line_edit_t(parent);
    field->setValidator(new QRegExpValidator(QRegExp(pattern), field));
    return field;
}

} // namespace

ui_product_id_dialog_t::ui_product_id_dialog_t(QWidget *parent)
    : QDialog(parent),
      product_type_edit(create_field(QStringLiteral("[a-zA-Z0-9_]+$"), this)),
      serial_number_edit(create_field(QStringLiteral("[a-zA-Z0-9]+$"), this)),
      set_btn(new ui_push_button_t(this))
{
    set_btn->setText(tr("Set"));
    auto *const form = new QFormLayout;
    form->addRow(tr("Product Type:"), product_type_edit);
    form->addRow(tr("Serial Number:"), serial_number_edit);
    set_group_layout(this, tr("Product Setting"), layout_above_buttons(form, {set_btn}));
    connect(set_btn, SIGNAL(clicked(bool)), this, SLOT(set_btn_click_slot()));
}

QString ui_product_id_dialog_t::product_code_of(const QString &product_type)
{
    // A type that holds both codes has the first.
    for (const QString &code : {QStringLiteral("24"), QStringLiteral("44")})
        if (product_type.contains(code) && product_type.contains(product_family))
            return code;
    return unknown_product_code;
}

void ui_product_id_dialog_t::set_btn_click_slot()
{
    const QString product_type = product_type_edit->text();
    const QString typed_number = serial_number_edit->text();
    const QString serial_number = typed_number.isEmpty() ? default_serial_number : typed_number;
    const QStringList commands{
        QStringLiteral("SYSTem:DEVice:DEFAULT"),
        QStringLiteral("SYSTem:DEVice:PRODUCTUG ") + product_type,
        QStringLiteral("SYSTem:DEVice:SERIAL:NUM ") + serial_number,
        QStringLiteral("SYSTem:DEVice:PRODUCTUG:ID ") + product_code_of(product_type),
        QStringLiteral("REBOOT"),
    };
    const instrument_traffic_t traffic;
    for (const QString &command : commands)
        if (!drv_command_t::instance()->send_command(command.toStdString()))
            return;
}
