// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/ui_central_widget.h"

#include <QtTest/QTest>

class test_main_window : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void menus_show_what_can_be_done();
    void device_actions_are_refused_data();
    void device_actions_are_refused();
    void vna_port_count_follows_the_product_data();
    void vna_port_count_follows_the_product();
    void exit_ends_the_event_loop();

private:
    simulator_t simulator;
};

void test_main_window::menus_show_what_can_be_done()
{
    const window_driver_t driver;
    QCOMPARE(driver.window.windowTitle(), "Corvane V1.2.3");
    QCOMPARE(driver.entries("File"), QStringList("Exit"));
    QCOMPARE(driver.entries("Tool"), QStringList({"LAN", "Scpi", "Color", "Upgrade"}));
    QCOMPARE(driver.entries("Help"), QStringList({"About", "Website"}));
}

void test_main_window::device_actions_are_refused_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("lan");
    QTest::addColumn<QString>("message");
    const QString not_connected = "Device not connected!";
    for (const char *const entry : {"LAN", "Scpi", "Color", "Upgrade"}) {
        QTest::addRow("%s, not connected", entry)
            << entry << int(link_modes::not_connected) << false << not_connected;
        QTest::addRow("%s, upgrading", entry)
            << entry << int(link_modes::upgrading) << false << "Upgrading!";
    }
    QTest::newRow("Upgrade over LAN")
        << "Upgrade" << int(link_modes::connected) << true << "Please upgrade using USB!";
    QTest::newRow("LAN over LAN") << "LAN" << int(link_modes::connected) << true
                                  << "Please change LAN using USB!";
    QTest::newRow("not connected comes first")
        << "LAN" << int(link_modes::not_connected) << true << not_connected;
}

void test_main_window::device_actions_are_refused()
{
    QFETCH(QString, entry);
    QFETCH(int, mode);
    QFETCH(bool, lan);
    QFETCH(QString, message);
    window_driver_t driver;
    if (lan)
        driver.connect_lan("127.0.0.1");
    drv_command_t::instance()->set_link_mode(static_cast<std::uint8_t>(mode));
    simulator.take_texts();

    QVERIFY(driver.choose("Tool", entry));
    QCOMPARE(driver.take_boxes(),
             QStringList{QStringLiteral("Information: %1 [OK, Close]").arg(message)});
    QCOMPARE(simulator.take_texts(), QByteArrayList());
}

void test_main_window::vna_port_count_follows_the_product_data()
{
    QTest::addColumn<int>("product");
    QTest::addColumn<int>("count");
    const QMap<int, int> counts{{21, 2}, {22, 2}, {24, 2}, {42, 4}, {44, 4}, {0, 2}, {23, 2}};
    for (auto row = counts.begin(); row != counts.end(); ++row)
        QTest::addRow("%d", row.key()) << row.key() << row.value();
}

void test_main_window::vna_port_count_follows_the_product()
{
    QFETCH(int, product);
    QFETCH(int, count);
    const window_driver_t driver;
    auto *const frame = driver.window.findChild<ui_central_widget_t *>();
    QCOMPARE(frame->vna_port_count(), 2);
    frame->change_port_widget_slot(44);
    QCOMPARE(frame->vna_port_count(), 4);
    frame->change_port_widget_slot(product);
    QCOMPARE(frame->vna_port_count(), count);
}

void test_main_window::exit_ends_the_event_loop()
{
    window_driver_t driver;
    QTimer::singleShot(0, &driver.window, [&driver] { driver.choose("File", "Exit"); });
    QCOMPARE(QApplication::exec(), 0);
}

CORVANE_GUI_TEST_MAIN(test_main_window)
#include "test_main_window.moc"
