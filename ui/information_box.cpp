// SPDX-License-Identifier: MIT
#include "ui/information_box.h"

#include <QMessageBox>

void show_information(QWidget *parent, const QString &text)
{
    QMessageBox::information(parent, QMessageBox::tr("Information"), text,
                             QMessageBox::Ok | QMessageBox::Close, QMessageBox::Ok);
}
