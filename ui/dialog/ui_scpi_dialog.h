// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class QBoxLayout;
class ui_line_edit_t;
class ui_push_button_t;

/// A console for one command at a time, sent as it is typed. Nothing is reported: a query that
/// fails empties the reply, a write or a read that fails changes nothing.
class ui_scpi_dialog_t : public QDialog
{
    Q_OBJECT

public:
    explicit ui_scpi_dialog_t(QWidget *parent);

public slots:
    /// Sends the command without waiting for a reply.
    void write_btn_click_slot();
    /// Sends the command and shows the reply.
    void query_btn_click_slot();
    /// Shows a reply that is due.
    void read_btn_click_slot();

private:
    void create_fields();
    void create_buttons();
    QBoxLayout *build_rows();

    ui_line_edit_t *command_edit = nullptr;
    ui_line_edit_t *reply_edit = nullptr;
    ui_push_button_t *write_btn = nullptr;
    ui_push_button_t *query_btn = nullptr;
    ui_push_button_t *read_btn = nullptr;
};
