// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class ui_push_button_t;

/// Name, version and build of the program, and the way to the open-source acknowledgment.
class ui_about_dialog_t : public QDialog
{
    Q_OBJECT

public:
    explicit ui_about_dialog_t(QWidget *parent);

private:
    ui_push_button_t *create_logo();
    ui_push_button_t *create_acknowledgment_button();
    void open_acknowledgment();
};
