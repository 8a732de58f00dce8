// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/ui_central_widget.h"

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
    void vna_port_count_follows_the_product();
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

void test_main_window::vna_port_count_follows_the_product()
{
    const window_driver_t driver;
    auto *const frame = driver.window.findChild<ui_central_widget_t *>();
    QCOMPARE(frame->vna_port_count(), 2);
    const QPair<int, int> counts[] = {{44, 4}, {24, 2}, {42, 4}, {23, 2}, {44, 4}, {21, 2}};
    for (const auto &[product, count] : counts) {
        frame->change_port_widget_slot(product);
        QCOMPARE(frame->vna_port_count(), count);
    }
}

/// Of a window that is never shown, too.
void test_main_window::constructor_leaves_a_panel_out()
{
    const MainWindow window(nullptr);
    const auto *const empty = window.findChild<QWidget *>("emptyWidget");
    QCOMPARE(empty->size(), QSize(948, 205));
    QCOMPARE(empty->styleSheet(),
             "ui_empty_widget_t#emptyWidget{border-image:url(:/image/panel_1.png)}");
    const QMap<QString, int> button_counts{
        {"21", 8}, {"22", 14}, {"24", 26}, {"42", 16}, {"44", 28}};
    for (auto product = button_counts.begin(); product != button_counts.end(); ++product) {
        const QString name = QString("ui_%1port_control_widget_t").arg(product.key());
        const QWidget *panel = nullptr;
        for (const QWidget *const candidate : window.findChildren<QWidget *>("portControlWidget"))
            if (candidate->metaObject()->className() == name)
                panel = candidate;
        QVERIFY2(panel != nullptr, qPrintable(name));
        QCOMPARE(qobject_cast<const QGroupBox *>(panel->parent())->title(), "PORT");
        QCOMPARE(panel->styleSheet(),
                 name + "#portControlWidget{border-image:url(:/image/panel.png)}");
        const auto buttons = panel->findChildren<QToolButton *>();
        QCOMPARE(buttons.size(), product.value());
        for (const QToolButton *const button : buttons)
            QCOMPARE(button->styleSheet(), QString("color:white;font-size:28px;"));
    }
}

void test_main_window::exit_ends_the_event_loop()
{
    window_driver_t driver;
    QTimer::singleShot(0, &driver.window, [&driver] { driver.choose("File", "Exit"); });
    QCOMPARE(QApplication::exec(), 0);
}

CORVANE_GUI_TEST_MAIN(test_main_window)
#include "test_main_window.moc"
