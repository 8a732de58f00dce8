// SPDX-License-Identifier: MIT
#include "fuzz/program_user.h"

#include "tests/support/dialog_driver.h"
#include "upgrade/upgrade_thread.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <QtTest/QTest>

namespace {

constexpr int patience_ms = 30'000;

void upgrade_in(QDialog &dialog, const QString &package)
{
    with_dialog([&dialog] { perform(dialog, QStringLiteral("Browse")); },
                [&package](const QDialog &chooser) {
                    auto *const field = chooser.findChild<QLineEdit *>();
                    field->setText(package);
                    QTest::keyClick(field, Qt::Key_Return);
                });
    perform(dialog, QStringLiteral("Begin"));
    const auto *const thread = dialog.findChild<upgrade_thread_t *>();
    const bool ended = QTest::qWaitFor([thread] { return !thread->isRunning(); }, patience_ms);
    if (!ended)
        qFatal("the upgrade does not end");
    // Brings up the last message.
    QApplication::processEvents();
}

} // namespace

void with_dialog(const std::function<void()> &open, const std::function<void(QDialog &)> &use)
{
    const QWidget *const before = QApplication::activeModalWidget();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto *const dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog == nullptr || dialog == before || qobject_cast<QMessageBox *>(dialog) != nullptr)
            return;
        timer.stop();
        use(*dialog);
        dialog->close();
    });
    timer.start(1);
    open();
}

void program_user_t::open_window()
{
    opened.reset();
    opened = std::make_unique<window_driver_t>();
}

void program_user_t::connect_lan()
{
    // Without a window manager a message that was closed leaves the keyboard to nobody.
    opened->window.activateWindow();
    if (QTest::qWaitForWindowActive(&opened->window))
        opened->connect_lan(QStringLiteral("127.0.0.1"));
}

void program_user_t::connect_usb()
{
    click({"USB", "Rescan"});
}

void program_user_t::click(const QStringList &buttons)
{
    for (const QString &button : buttons)
        opened->click(button);
}

void program_user_t::use_panel()
{
    click({"A", "3", "A", "B", "2", "Reset"});
}

bool program_user_t::routes()
{
    click({"Reset", "A", "3"});
    return opened->lit_ports() == QStringList{"A", "3"};
}

void program_user_t::use_dialog(const QString &menu_entry, const QStringList &steps)
{
    with_dialog([&] { opened->choose(QStringLiteral("Tool"), menu_entry); },
                [&steps](const QDialog &dialog) {
                    for (const QString &step : steps)
                        perform(dialog, step);
                });
}

void program_user_t::upgrade(const QString &package)
{
    with_dialog([this] { opened->choose(QStringLiteral("Tool"), QStringLiteral("Upgrade")); },
                [&package](QDialog &dialog) { upgrade_in(dialog, package); });
}
