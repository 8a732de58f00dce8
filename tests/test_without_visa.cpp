// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "drv/visa_library.h"
#include "tests/support/pseudo_terminal.h"
#include "tests/support/window_driver.h"

#include <QtTest/QTest>

/// Runs with no VISA library on the loader's path, with one that lacks an entry point, and with one
/// whose resource manager does not open: to the user these are the same.
class test_without_visa : public QObject
{
    Q_OBJECT

private slots:
    void link_says_that_it_is_not_ready();
    void entry_points_are_safe_to_call();
    void upgrade_is_hidden();
    void rescan_looks_for_serial_ports();
    void lan_is_refused();
    void commands_go_over_the_serial_port_data();
    void commands_go_over_the_serial_port();
    void silent_serial_port_fails();
};

void test_without_visa::link_says_that_it_is_not_ready()
{
    QCOMPARE(drv_device_t::instance()->visa_is_ready(), false);
    QCOMPARE(drv_device_t::instance()->visa_init(), visa_result::not_available);
}

void test_without_visa::entry_points_are_safe_to_call()
{
    drv_device_t &device = *drv_device_t::instance();
    std::vector<std::string> list;
    int count = -1;
    char buffer[8] = "";
    ViSession session = 0;
    QCOMPARE(device.usb_scan(list, count), visa_result::nothing_found);
    QCOMPARE(count, 0);
    QVERIFY(!device.lan_connect("127.0.0.1"));
    QVERIFY(!device.usb_connect_resource("USB0::1::2::3::INSTR"));
    QVERIFY(!device.link_write("*RST", 4));
    QCOMPARE(device.link_read(buffer, sizeof buffer), -1);
    QVERIFY(!device.link_query("*IDN?", buffer, sizeof buffer));
    QVERIFY(!device.link_disconnect());
    QVERIFY(device.session_open("x", session) < vi_success);
    QVERIFY(device.session_clear(1) < vi_success);
    QVERIFY(device.set_session_timeout(1, 100) < vi_success);
    QCOMPARE(device.session_timeout(1), ViUInt32(0));
}

void test_without_visa::upgrade_is_hidden()
{
    const window_driver_t driver;
    QCOMPARE(driver.entries("Tool"), QStringList({"LAN", "Scpi", "Color"}));
}

void test_without_visa::rescan_looks_for_serial_ports()
{
    window_driver_t driver;
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.take_boxes(), QStringList{"Information: Target device no find! [OK, Close]"});
}

void test_without_visa::lan_is_refused()
{
    window_driver_t driver;
    driver.connect_lan("127.0.0.1");
    QCOMPARE(driver.take_boxes(), QStringList{"Information: Ip address no find! [OK, Close]"});
    QCOMPARE(driver.link_text(), "(/)");
}

void test_without_visa::commands_go_over_the_serial_port_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("answered");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("line end is cut") << QByteArray("3,0,0,0\n") << true << QByteArray("3,0,0,0");
    QTest::newRow("one character") << QByteArray("\n") << true << QByteArray();
    QTest::newRow("bytes beyond ASCII")
        << QByteArray("\xff\0x\n", 4) << true << QByteArray("\xff\0x", 3);
}

void test_without_visa::commands_go_over_the_serial_port()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, answered);
    QFETCH(QByteArray, text);
    drv_command_t &command = *drv_command_t::instance();
    pseudo_terminal_t terminal;
    QVERIFY(!command.send_command("ADD:ROUTe A3"));
    QVERIFY(command.serial_open(terminal.path()));
    QVERIFY(command.serial_open(terminal.path()));

    QVERIFY(command.send_command("ADD:ROUTe A3"));
    QCOMPARE(terminal.take_bytes(12), QByteArray("ADD:ROUTe A3"));
    terminal.answer_next(reply);
    std::string out = "before";
    QCOMPARE(command.query("ROUTes?", out), answered);
    QCOMPARE(QByteArray::fromStdString(out), text);
    QCOMPARE(terminal.take_bytes(7), QByteArray("ROUTes?"));
    command.serial_close();
    QVERIFY(!command.query("ROUTes?", out));
}

void test_without_visa::silent_serial_port_fails()
{
    drv_command_t &command = *drv_command_t::instance();
    pseudo_terminal_t terminal;
    QVERIFY(command.serial_open(terminal.path()));
    std::string out = "before";
    QVERIFY(!command.query("ROUTes?", out));
    QVERIFY(!command.read_reply(out));
    QCOMPARE(out, std::string("before"));
    command.serial_close();
}

CORVANE_GUI_TEST_MAIN(test_without_visa)
#include "test_without_visa.moc"
