// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"

#include <QComboBox>
#include <QtTest/QTest>

class test_connect_panel : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void start_shows_no_instrument();
    void rescan_leaves_out_foreign_instruments();
    void rescan_keeps_positions_of_the_whole_search();
    void rescan_of_an_empty_bus_says_so();
    void busy_usb_instrument_fails_in_silence();
    void lan_connect_data();
    void lan_connect();
    void mismatch_after_a_connection_closes_it();
    void broken_identity_shows_the_placeholder_data();
    void broken_identity_shows_the_placeholder();

private:
    simulator_t simulator;
};

void test_connect_panel::start_shows_no_instrument()
{
    const window_driver_t driver;
    QCOMPARE(driver.status_text(), "TMX is disconnected!");
    QCOMPARE(driver.link_text(), "(/)");
    QCOMPARE(driver.panel(), "ui_empty_widget_t");
    QCOMPARE(driver.devices(), QStringList());
    QCOMPARE(driver.button("Apply"), nullptr);
    QCOMPARE(simulator.take_texts(), QByteArrayList());
}

void test_connect_panel::rescan_leaves_out_foreign_instruments()
{
    window_driver_t driver;
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.devices().size(), 5);
    for (const QString &name : driver.devices())
        QVERIFY2(name.contains("0xA17E::0x2000"), qPrintable(name));
    QCOMPARE(driver.panel(), "ui_44port_control_widget_t");
    QCOMPARE(drv_device_t::instance()->is_usb_link(), true);
    QCOMPARE(driver.take_boxes(), QStringList());
}

void test_connect_panel::rescan_keeps_positions_of_the_whole_search()
{
    simulator.load_fleet(R"({"instruments": [
        {"identity": "OTHER,1,1,1", "resources": ["USB0::0x0001::0x0001::A::INSTR"]},
        {"product": 42, "serial": "X1", "version": "3.1",
         "resources": ["USB0::0xA17E::0x2000::X1::INSTR"]},
        {"identity": "OTHER,1,1,1", "resources": ["USB0::0x0001::0x0001::B::INSTR"]},
        {"product": 21, "serial": "X2", "resources": ["USB0::0xA17E::0x2000::X2::INSTR"]}]})");
    window_driver_t driver;
    QVERIFY(driver.connect_usb("X1"));
    const auto *const list = driver.window.findChild<QComboBox *>();
    QCOMPARE(list->itemData(0).toInt(), 2);
    QCOMPARE(list->itemData(1).toInt(), 4);
    QCOMPARE(driver.status_text(), "TMX5042,Serial:X1,Version:3.1");
}

void test_connect_panel::rescan_of_an_empty_bus_says_so()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    simulator.load_fleet(R"({"instruments": []})");
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.take_boxes(), QStringList{"Information: Target device no find! [OK, Close]"});
    QCOMPARE(driver.devices(), QStringList());
    QCOMPARE(driver.link_text(), "(USB)");
}

void test_connect_panel::busy_usb_instrument_fails_in_silence()
{
    window_driver_t driver;
    simulator.fail_call(CORVANE_SIM_OPEN);
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.take_boxes(), QStringList());
    QCOMPARE(driver.link_text(), "(/)");
    QCOMPARE(driver.panel(), "ui_empty_widget_t");
    QCOMPARE(driver.devices().size(), 5);
}

void test_connect_panel::lan_connect_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QByteArray>("identity");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("link");
    QTest::newRow("our instrument") << "127.0.0.1" << QByteArray() << QStringList() << "(LAN)";
    QTest::newRow("lower case") << "127.0.0.1" << QByteArray("x,tmx1\n") << QStringList()
                                << "(LAN)";
    QTest::newRow("an octet is missing") << "127.0.0." << QByteArray() << QStringList() << "(/)";
    QTest::newRow("nobody there") << "127.0.0.99" << QByteArray()
                                  << QStringList{"Information: Ip address no find! [OK, Close]"}
                                  << "(/)";
    QTest::newRow("another maker's")
        << "127.0.0.1" << QByteArray("OTHER,MODEL\n")
        << QStringList{"Information: No target device! [OK, Close]"} << "(/)";
    QTest::newRow("empty identity")
        << "127.0.0.1" << QByteArray("\n")
        << QStringList{"Information: No target device! [OK, Close]"} << "(/)";
}

void test_connect_panel::lan_connect()
{
    QFETCH(QString, address);
    QFETCH(QByteArray, identity);
    QFETCH(QStringList, boxes);
    QFETCH(QString, link);
    if (!identity.isEmpty())
        simulator.script_reply("*IDN?", identity);
    window_driver_t driver;
    driver.connect_lan(address);
    QCOMPARE(driver.take_boxes(), boxes);
    QCOMPARE(driver.link_text(), link);
    const bool connected = link == QLatin1String("(LAN)");
    QCOMPARE(driver.panel(), connected ? "ui_44port_control_widget_t" : "ui_empty_widget_t");
    QCOMPARE(drv_command_t::instance()->link_mode() == link_modes::connected, connected);
    QCOMPARE(drv_device_t::instance()->is_usb_link(), !connected);
    if (connected)
        QCOMPARE(simulator.take_texts().first(), QByteArray("*IDN?"));
}

void test_connect_panel::mismatch_after_a_connection_closes_it()
{
    window_driver_t driver;
    driver.connect_lan("127.0.0.1");
    const QString status = driver.status_text();
    simulator.script_reply("*IDN?", "OTHER\n");
    driver.connect_lan("127.0.0.2");
    QCOMPARE(driver.link_text(), "(/)");
    QCOMPARE(driver.status_text(), status);
    driver.take_boxes();
    simulator.take_texts();
    QVERIFY(driver.click("A"));
    QVERIFY(driver.click("3"));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
}

void test_connect_panel::broken_identity_shows_the_placeholder_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("status");
    QTest::newRow("product is no number") << QByteArray("SHOW:PRODect:ID?") << QByteArray("x44\n")
                                          << "TMX5044,Serial:SN44001,Version:1.0.0";
    QTest::newRow("unknown product") << QByteArray("SHOW:PRODect:ID?") << QByteArray("23\n")
                                     << "TMX5044,Serial:SN44001,Version:1.0.0";
    QTest::newRow("product beyond an int")
        << QByteArray("SHOW:PRODect:ID?") << QByteArray("99999999999999999999\n")
        << "TMX5044,Serial:SN44001,Version:1.0.0";
    QTest::newRow("model is not answered")
        << QByteArray("SHOW:MNAMe?") << QByteArray() << ",Serial:,Version:";
}

void test_connect_panel::broken_identity_shows_the_placeholder()
{
    QFETCH(QByteArray, message);
    QFETCH(QByteArray, reply);
    QFETCH(QString, status);
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    simulator.script_reply(message, reply);
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.panel(), "ui_empty_widget_t");
    QCOMPARE(driver.status_text(), status);
    QCOMPARE(driver.link_text(), "(USB)");
    QCOMPARE(driver.take_boxes(), QStringList());
}

CORVANE_GUI_TEST_MAIN(test_connect_panel)
#include "test_connect_panel.moc"
