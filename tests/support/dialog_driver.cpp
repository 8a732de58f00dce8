// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QTimer>
#include <QtTest/QTest>

bool use_dialog(const std::function<void()> &open, const std::function<void(QDialog &)> &use)
{
    bool closed_by_escape = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto *const dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog == nullptr || !QTest::qWaitForWindowActive(dialog))
            return;
        timer.stop();
        use(*dialog);
        const bool open_before = dialog->isVisible();
        QTest::keyClick(dialog, Qt::Key_Escape);
        closed_by_escape = open_before && !dialog->isVisible();
        dialog->close();
    });
    timer.start(1);
    open();
    return closed_by_escape;
}

bool press(const QDialog &dialog, const QString &text)
{
    auto *const button = field<QAbstractButton>(dialog, text);
    if (button == nullptr || !button->isEnabled())
        return false;
    QTest::mouseClick(button, Qt::LeftButton);
    return true;
}

void enter(QWidget *text_field, const QString &text)
{
    QTest::mouseClick(text_field, Qt::LeftButton);
    QTest::keyClick(text_field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(text_field, Qt::Key_Delete);
    if (text == QString::fromLatin1(text.toLatin1())) {
        QTest::keyClicks(text_field, text);
    } else {
        QApplication::clipboard()->setText(text);
        QTest::keyClick(text_field, Qt::Key_V, Qt::ControlModifier);
    }
}

QString label_of(const QDialog &dialog, const QWidget *widget)
{
    if (const auto *const button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    for (const QLabel *const label : dialog.findChildren<QLabel *>()) {
        const QWidget *const buddy = label->buddy();
        if (buddy != nullptr && (buddy == widget || buddy->isAncestorOf(widget)))
            return label->text();
    }
    return widget->accessibleName();
}

QStringList press_return_everywhere(const QDialog &dialog)
{
    QStringList labels;
    const QWidget *const first = dialog.focusWidget();
    do {
        labels.append(label_of(dialog, dialog.focusWidget()));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    } while (dialog.isVisible() && dialog.focusWidget() != first);
    labels.removeDuplicates();
    return labels;
}
