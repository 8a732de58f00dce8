// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QStringList>

class ui_line_edit_t;
class ui_push_button_t;

/// Factory use: gives an instrument its product type and serial number, and reboots it.
class ui_product_id_dialog_t : public QDialog
{
    Q_OBJECT

public:
    explicit ui_product_id_dialog_t(QWidget *parent);

    /// The two-digit product code that belongs to a product type; "99" for one that is not known.
    static QString product_code_of(const QString &product_type);

public slots:
    /// Sends the provisioning commands. The first that fails ends the sequence without a word, so
    /// that an instrument is not rebooted half-written.
    void set_btn_click_slot();

private:
    ui_line_edit_t *product_type_edit = nullptr;
    ui_line_edit_t *serial_number_edit = nullptr;
    ui_push_button_t *set_btn = nullptr;
    /// Nothing fills it today; it stays empty.
    QStringList unused;
};
