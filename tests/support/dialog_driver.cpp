// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"

#include "tests/support/window_driver.h"
#include "ui/widget/q_ip_line_edit.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QTimer>
#include <QtTest/QTest>

namespace {

template <typename widget_t>
widget_t *find(const QDialog &dialog, const QString &label)
{
    for (widget_t *const candidate : dialog.findChildren<widget_t *>())
        if (label_of(dialog, candidate) == label)
            return candidate;
    return nullptr;
}

void enter(QLineEdit *edit, const QString &text)
{
    QTest::mouseClick(edit, Qt::LeftButton);
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Delete);
    if (text == QString::fromLatin1(text.toLatin1())) {
        QTest::keyClicks(edit, text);
        return;
    }
    QApplication::clipboard()->setText(text);
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
}

} // namespace

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

bool perform(const QDialog &dialog, const QString &step)
{
    const QString label = step.section(QLatin1Char('='), 0, 0);
    const QString value = step.section(QLatin1Char('='), 1);
    if (auto *const button = find<QAbstractButton>(dialog, label)) {
        QTest::mouseClick(button, Qt::LeftButton);
        return button->isEnabled();
    }
    if (auto *const list = find<QComboBox>(dialog, label)) {
        choose_item(*list, list->findText(value));
        return list->currentText() == value;
    }
    if (const auto *const address = find<QIPLineEdit>(dialog, label)) {
        const auto octets = address->findChildren<QLineEdit *>();
        for (int part = 0; part < octets.size(); ++part)
            enter(octets.at(part), value.section(QLatin1Char('.'), part, part));
        return !octets.isEmpty();
    }
    auto *const edit = find<QLineEdit>(dialog, label);
    if (edit != nullptr)
        enter(edit, value);
    return edit != nullptr;
}

QString shown(const QDialog &dialog, const QString &label)
{
    if (const auto *const list = find<QComboBox>(dialog, label))
        return list->currentText() + (list->isEnabled() ? QString() : QStringLiteral(" off"));
    if (const auto *const address = find<QIPLineEdit>(dialog, label))
        return address->text();
    const auto *const edit = find<QLineEdit>(dialog, label);
    return edit != nullptr ? edit->text() : QStringLiteral("no such field");
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
