// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"

#include <QDesktopServices>
#include <QGroupBox>
#include <QMenuBar>
#include <QToolButton>
#include <QtTest/QTest>

class test_main_window : public QObject
{
    Q_OBJECT

public slots:
    void note_address(const QUrl &url) { address = url; }

private slots:
    void init() { simulator.reset(); }
    void menus_or_icon_are_wrong();
    void device_action_is_not_refused();
    void constructor_leaves_a_panel_out();
    void exit_ends_the_event_loop();

private:
    simulator_t simulator;
    QUrl address;
};

void test_main_window::menus_or_icon_are_wrong()
{
    window_driver_t driver;
    QCOMPARE(driver.window.windowTitle(), "Corvane V1.2.3");
    QVERIFY(!driver.window.windowIcon().isNull());
    QStringList menus;
    for (const QAction *const menu : driver.window.menuBar()->actions())
        menus.append(menu->text() + ": " + driver.entries(menu->text()).join(", "));
    QCOMPARE(menus.join("; "), "File: Exit; Tool: LAN, Scpi, Color, Upgrade; Help: About, Website");
    QDesktopServices::setUrlHandler("https", this, "note_address");
    QVERIFY(driver.choose("Help", "Website"));
    QCOMPARE(address, QUrl("https://norvale.example/"));
}

void test_main_window::device_action_is_not_refused()
{
    simulator.script_reply("ROUTes?", "0,14,0,0\n");
    const auto check = [this](std::uint8_t mode, const QStringList &entries, const char *message) {
        window_driver_t driver;
        driver.connect_lan("127.0.0.1");
        drv_command_t::instance()->set_link_mode(mode);
        simulator.take_texts();
        if (mode != link_modes::connected) {
            // Neither with a pick nor without one do the ports react.
            QVERIFY(driver.click("B") && driver.click("14") && driver.click("A"));
            QCOMPARE(driver.disabled_ports(), QStringList());
            drv_command_t::instance()->set_link_mode(link_modes::connected);
            QVERIFY(driver.click("A"));
            const QStringList disabled = driver.disabled_ports();
            drv_command_t::instance()->set_link_mode(mode);
            QVERIFY(driver.click("3") && driver.click("Reset"));
            QCOMPARE(driver.disabled_ports(), disabled);
        }
        for (const QString &entry : entries) {
            QVERIFY(driver.choose("Tool", entry));
            QCOMPARE(driver.take_boxes(), QStringList(message));
        }
        QCOMPARE(simulator.take_texts(), QByteArrayList());
    };
    const QStringList all{"LAN", "Scpi", "Color", "Upgrade"};
    check(link_modes::not_connected, all, "Information: Device not connected! [OK, Close]");
    check(link_modes::upgrading, all, "Information: Upgrading! [OK, Close]");
    check(link_modes::connected, {"LAN"}, "Information: Please change LAN using USB! [OK, Close]");
    check(link_modes::connected, {"Upgrade"}, "Information: Please upgrade using USB! [OK, Close]");
}

/// Of a window that is never shown, too.
void test_main_window::constructor_leaves_a_panel_out()
{
    const MainWindow window(nullptr);
    const auto *const empty = window.findChild<QWidget *>("emptyWidget");
    QCOMPARE(empty->size(), QSize(948, 205));
    QCOMPARE(empty->styleSheet(),
             "ui_empty_widget_t#emptyWidget{border-image:url(:/image/panel_1.png)}");
    QStringList panels;
    for (const QWidget *const panel : window.findChildren<QWidget *>("portControlWidget")) {
        panels.append(panel->metaObject()->className());
        QCOMPARE(qobject_cast<const QGroupBox *>(panel->parent())->title(), "PORT");
        QCOMPARE(panel->styleSheet(),
                 panels.last() + "#portControlWidget{border-image:url(:/image/panel.png)}");
        for (const auto *const button : panel->findChildren<QToolButton *>())
            QCOMPARE(button->styleSheet(), QString("color:white;font-size:28px;"));
    }
    panels.sort();
    QCOMPARE(panels.join(' ').remove("port_control_widget_t"), "ui_21 ui_22 ui_24 ui_42 ui_44");
}

void test_main_window::exit_ends_the_event_loop()
{
    window_driver_t driver;
    QTimer::singleShot(0, &driver.window, [&driver] { driver.choose("File", "Exit"); });
    QCOMPARE(QApplication::exec(), 0);
}

CORVANE_GUI_TEST_MAIN(test_main_window)
#include "test_main_window.moc"
