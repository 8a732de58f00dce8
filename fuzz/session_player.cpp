// SPDX-License-Identifier: MIT
#include "fuzz/session_player.h"

#include "tests/support/dialog_driver.h"
#include "ui/widget/ui_combo_box.h"
#include "upgrade/upgrade_thread.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <QtTest/QTest>

namespace {

const QByteArray first_resource = "USB0::0xA17E::0x2000::F44::INSTR";
const QByteArray boot_image = "a boot image of one block";
const QByteArray manufacturer = "TMX";
constexpr int patience_ms = 30'000;

/// One of each product on USB, the first also on LAN, and one of another maker.
QByteArray fleet()
{
    return QByteArray(R"({"default_timeout_ms": %1, "reboot_ms": 0, "instruments": [
        {"product": 44, "serial": "F44", "upgrade_id": [44, 0, 0, 1],
         "resources": ["%2", "TCPIP0::127.0.0.1::INSTR"]},
        {"product": 42, "serial": "F42", "resources": ["USB0::0xA17E::0x2000::F42::INSTR"]},
        {"identity": "MAKER,FG,1,2", "resources": ["USB0::0x0A11::0x0588::FG::INSTR"]},
        {"product": 24, "serial": "F24", "resources": ["USB0::0xA17E::0x2000::F24::INSTR"]},
        {"product": 22, "serial": "F22", "resources": ["USB0::0xA17E::0x2000::F22::INSTR"]},
        {"product": 21, "serial": "F21", "resources": ["USB0::0xA17E::0x2000::F21::INSTR"]}]})")
        .replace("%1", QByteArray::number(session_player_t::timeout_ms))
        .replace("%2", first_resource);
}

/// Runs `open`. If that brings up a dialog, and not a mere message, uses it and closes it.
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

} // namespace

session_player_t::session_player_t()
    : package(folder.write(QStringLiteral("固件.ADS"),
                           make_package(44, {{6, manufacturer}, {3, boot_image}})))
{
    simulator.stop_log();
    switch_on();
}

void session_player_t::switch_on()
{
    simulator.load_fleet(fleet());
}

void session_player_t::open_window()
{
    driver.reset();
    driver = std::make_unique<window_driver_t>();
}

void session_player_t::play()
{
    driver->click(QStringLiteral("Rescan"));
    use_panels();
    // Without a window manager a message that was closed leaves the keyboard to nobody.
    driver->window.activateWindow();
    if (QTest::qWaitForWindowActive(&driver->window))
        driver->connect_lan(QStringLiteral("127.0.0.1"));
    use_panel();
    driver->click(QStringLiteral("USB"));
    driver->click(QStringLiteral("Rescan"));
    use_dialog(QStringLiteral("Color"), {"Color VNA Port B:=Green", "Default"});
    use_dialog(QStringLiteral("LAN"), {"Refresh", "IP Setting=Fixed IP", "Apply"});
    use_dialog(QStringLiteral("Scpi"), {"Write", "Read", "Query", "Read"});
    use_about_box();
    use_upgrade_dialog();
    use_product_dialog();
}

/// Routes, takes the route away, routes again and resets.
void session_player_t::use_panel()
{
    for (const char *const button : {"A", "3", "A", "B", "2", "Reset"})
        driver->click(QString::fromLatin1(button));
}

void session_player_t::use_panels()
{
    auto *const list = driver->window.findChild<ui_combo_box_t *>();
    for (int index = 0; index < list->count(); ++index) {
        choose_item(*list, index);
        use_panel();
    }
}

void session_player_t::use_dialog(const QString &menu_entry, const QStringList &steps)
{
    with_dialog([&] { driver->choose(QStringLiteral("Tool"), menu_entry); },
                [&](const QDialog &dialog) {
                    for (const QString &step : steps)
                        perform(dialog, step);
                });
}

void session_player_t::use_about_box()
{
    driver->choose(QStringLiteral("Help"), QStringLiteral("About"));
    QWidget *const box = QApplication::activeModalWidget();
    if (box == nullptr)
        return;
    box->close();
    // The program keeps its boxes until its end, which is thousands of sessions away.
    box->deleteLater();
}

void session_player_t::use_upgrade_dialog()
{
    with_dialog([this] { driver->choose(QStringLiteral("Tool"), QStringLiteral("Upgrade")); },
                [this](QDialog &dialog) { upgrade(dialog); });
}

void session_player_t::upgrade(QDialog &dialog)
{
    with_dialog([&] { perform(dialog, QStringLiteral("Browse")); },
                [this](const QDialog &chooser) {
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

void session_player_t::use_product_dialog()
{
    with_dialog(
        [this] { QMetaObject::invokeMethod(&driver->window, "product_btn_click_slot"); },
        [](const QDialog &dialog) {
            for (const char *const step : {"Product Type:=TMX5044", "Serial Number:=F44", "Set"})
                perform(dialog, QString::fromLatin1(step));
        });
}

bool session_player_t::reconnects()
{
    driver->click(QStringLiteral("USB"));
    driver->click(QStringLiteral("Rescan"));
    driver->click(QStringLiteral("A"));
    driver->click(QStringLiteral("3"));
    return driver->link_text() == QLatin1String("(USB)") &&
           driver->status_text() == QLatin1String("TMX5044,Serial:F44,Version:1.0.0") &&
           driver->lit_ports() == QStringList{"A", "3"};
}

bool session_player_t::upgraded()
{
    return simulator.images(first_resource) == QList<QPair<int, QByteArray>>{{3, boot_image}} &&
           simulator.parameters(first_resource)
               .contains(QPair<QByteArray, QByteArray>{"MANUFTRUG", manufacturer});
}
