// SPDX-License-Identifier: MIT
#include "ui/information_box.h"

#include <QCoreApplication>
#include <QMessageBox>

void show_information(QWidget *parent, const QString &text)
{
    const QString title =
        QCoreApplication::translate(parent->metaObject()->className(), "Information");
    QMessageBox::information(parent, title, text, QMessageBox::Ok | QMessageBox::Close,
                             QMessageBox::Ok);
}
