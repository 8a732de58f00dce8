// SPDX-License-Identifier: MIT
#include "ui/ui_waiting_dialog.h"

#include <QLabel>
#include <QVBoxLayout>

ui_waiting_dialog_t::ui_waiting_dialog_t(QWidget *parent)
    : QDialog(parent), movie(QStringLiteral(":/image/waiting.gif"))
{
    auto *const label = new QLabel;
    label->setAlignment(Qt::AlignCenter);
    label->setMovie(&movie);
    auto *const rows = new QVBoxLayout(this);
    rows->addWidget(label);
    movie.start();
}
