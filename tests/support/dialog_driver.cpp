// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"

#include "tests/support/window_driver.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QtTest/QTest>

namespace {

QString label_of(const QDialog &dialog, const QWidget *widget)
{
    if (const auto *const button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    for (const QLabel *const label : dialog.findChildren<QLabel *>())
        if (label->buddy() == widget || label->buddy() == widget->parentWidget())
            return label->text();
    return widget->accessibleName();
}

/// An address, which is a line edit itself, stands for those of its octets.
template <typename widget_t>
QList<widget_t *> find(const QDialog &dialog, const QString &label)
{
    QList<widget_t *> found;
    for (widget_t *const candidate : dialog.findChildren<widget_t *>())
        if (label_of(dialog, candidate) == label &&
            candidate->template findChild<QLineEdit *>() == nullptr)
            found.append(candidate);
    return found;
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
        QTest::keyClick(dialog, Qt::Key_Escape);
        closed_by_escape = !dialog->isVisible();
        dialog->close();
    });
    timer.start(1);
    open();
    return closed_by_escape;
}

bool perform(const QDialog &dialog, const QString &step)
{
    const QString label = step.section(QLatin1Char('='), 0, 0);
    const QString value = step.section(QLatin1Char('='), 1);
    if (auto *const button = find<QAbstractButton>(dialog, label).value(0)) {
        QTest::mouseClick(button, Qt::LeftButton);
        return button->isEnabled();
    }
    if (auto *const list = find<QComboBox>(dialog, label).value(0)) {
        choose_item(*list, list->findText(value));
        return list->currentText() == value;
    }
    const auto edits = find<QLineEdit>(dialog, label);
    const QStringList values =
        edits.size() > 1 ? value.split(QLatin1Char('.')) : QStringList(value);
    for (int index = 0; index < edits.size(); ++index) {
        QTest::keyClick(edits[index], Qt::Key_A, Qt::ControlModifier);
        for (const QChar &character : values[index])
            QTest::sendKeyEvent(QTest::Click, edits[index], Qt::Key_unknown, character, {});
    }
    return !edits.isEmpty();
}

QString shown(const QDialog &dialog, const QString &label)
{
    if (const auto *const list = find<QComboBox>(dialog, label).value(0))
        return list->currentText() + (list->isEnabled() ? QString() : QStringLiteral(" off"));
    QStringList texts;
    for (const QLineEdit *const edit : find<QLineEdit>(dialog, label))
        texts.append(edit->text());
    return texts.join(QLatin1Char('.'));
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

bool choose_file(const QDialog &dialog, const QString &path,
                 const std::function<void(const QFileDialog &)> &look)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto *const chooser = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (chooser == nullptr)
            return;
        timer.stop();
        look(*chooser);
        auto *const field = chooser->findChild<QLineEdit *>();
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, path, Qt::NoModifier);
        QTest::keyClick(field, path.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    });
    timer.start(1);
    return perform(dialog, "Browse");
}
