// SPDX-License-Identifier: MIT
#include "tests/support/box_watcher.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest/QTest>

box_watcher_t::box_watcher_t(QObject *parent) : QObject(parent)
{
    connect(&timer, &QTimer::timeout, this, &box_watcher_t::close_box);
    timer.start(1);
}

QStringList box_watcher_t::take_boxes()
{
    QStringList taken;
    taken.swap(boxes);
    return taken;
}

void box_watcher_t::leave_until_another(const QString &text)
{
    left_text = text;
}

void box_watcher_t::close_box()
{
    auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible() || box->text() == left_text)
        return;
    left_text.clear();
    QStringList buttons;
    QAbstractButton *const by_default = box->defaultButton();
    for (const QAbstractButton *const button : box->buttons()) {
        const bool odd = button == by_default && box->standardButton(by_default) != QMessageBox::Ok;
        buttons.append(button->text().remove(QLatin1Char('&')) + (odd ? " by default" : ""));
    }
    boxes.append(QStringLiteral("%1: %2 [%3]")
                     .arg(box->windowTitle(), box->text(), buttons.join(QLatin1String(", "))));
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
}
