// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"
#include "ui/ui_central_widget.h"
#include "ui/ui_connect_widget.h"
#include "ui/widget/ui_label.h"

#include <QComboBox>
#include <QSignalSpy>
#include <QtTest/QTest>

class test_connect_panel : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void start_or_a_busy_instrument_looks_connected();
    void rescan_lists_foreign_instruments_or_none_silently();
    void failed_open_passes_for_the_connection();
    void lan_connect_takes_the_wrong_end();
    void broken_identity_shows_a_panel();
    void long_identity_widens_the_window();
    void keyboard_misses_the_layout_or_return_does_nothing();

private:
    simulator_t simulator;
};

void test_connect_panel::start_or_a_busy_instrument_looks_connected()
{
    window_driver_t driver;
    QCOMPARE(driver.button("Apply"), nullptr);
    QVERIFY(driver.button("USB")->isChecked());
    QCOMPARE(simulator.take_texts(), QByteArrayList());
    simulator.fail_call(CORVANE_SIM_OPEN);
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.take_boxes(), QStringList());
    QCOMPARE(driver.status_text(), "TMX is disconnected!");
    QCOMPARE(driver.link_text(), "(/)");
    QCOMPARE(driver.panel(), "ui_empty_widget_t");
    QCOMPARE(driver.devices().size(), 5);
}

void test_connect_panel::rescan_lists_foreign_instruments_or_none_silently()
{
    simulator.load_fleet(R"({"instruments": [
        {"identity": "OTHER,1,1,1", "resources": ["USB0::0xA17E::0x2001::A::INSTR"]},
        {"product": 42, "serial": "X1", "version": "3.1",
         "resources": ["USB0::0xA17E::0x2000::X1::INSTR"]},
        {"identity": "OTHER,1,1,1", "resources": ["USB0::0x0001::0x2000::B::INSTR"]},
        {"product": 21, "serial": "X2", "resources": ["USB0::0xA17E::0x2000::X2::INSTR"]}]})");
    window_driver_t driver;
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.devices(),
             QStringList({"USB0::0xA17E::0x2000::X1::INSTR", "USB0::0xA17E::0x2000::X2::INSTR"}));
    const auto *const list = driver.window.findChild<QComboBox *>();
    QCOMPARE(list->itemData(0).toInt(), 2);
    QCOMPARE(list->itemData(1).toInt(), 4);
    QCOMPARE(driver.status_text(), "TMX5042,Serial:X1,Version:3.1");
    QCOMPARE(driver.panel(), "ui_42port_control_widget_t");
    QVERIFY(drv_device_t::instance()->is_usb_link());
    QCOMPARE(driver.take_boxes(), QStringList());
    simulator.load_fleet(R"({"instruments": []})");
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.take_boxes(), QStringList("Information: Target device no find! [OK, Close]"));
    QCOMPARE(driver.devices(), QStringList());
    QCOMPARE(driver.link_text(), "(USB)");
    simulator.load_fleet(R"({"instruments": [{"product": 21, "serial": "N1",
                             "resources": ["USB0::0xA17E::0x2000::N1::INSTR"]}]})");
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.panel(), "ui_21port_control_widget_t");
}

void test_connect_panel::failed_open_passes_for_the_connection()
{
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN44"));
    const QString status = driver.status_text();
    auto *const list = driver.window.findChild<QComboBox *>();
    for (const int error : {1, simulator_t::vi_error_io}) {
        simulator.fail_call(CORVANE_SIM_OPEN, 1, error);
        choose_item(*list, error == 1 ? 1 : 2);
        QCOMPARE(driver.status_text(), status);
        QCOMPARE(driver.link_text(), "(USB)");
        QCOMPARE(driver.panel(), "ui_44port_control_widget_t");
        QCOMPARE(driver.take_boxes(), QStringList());
    }
    choose_item(*list, 1);
    QVERIFY(driver.status_text() != status);

    QSignalSpy lost(driver.window.findChild<ui_connect_widget_t *>(),
                    SIGNAL(device_disconnect_msg()));
    QMetaObject::invokeMethod(driver.window.findChild<ui_connect_widget_t *>(),
                              "device_disconnect_slot");
    QCOMPARE(lost.size(), 1);
    QCOMPARE(driver.link_text(), "(/)");
    QCOMPARE(int(drv_command_t::instance()->link_mode()), 2);
}

void test_connect_panel::lan_connect_takes_the_wrong_end()
{
    const char *const rows[][4] = {
        {"127.0.0.", "TMX\n", "(/)", ""},
        {"127.0.0.99", "TMX\n", "(/)", "Information: Ip address no find! [OK, Close]"},
        {"127.0.0.1", "x,tmx1\n", "(LAN)", ""},
        {"127.0.0.2", "OTHER\n", "(/)", "Information: No target device! [OK, Close]"},
    };
    window_driver_t driver;
    for (const auto &[address, identity, link, box] : rows) {
        simulator.script_reply("*IDN?", identity);
        QVERIFY(driver.click("LAN") && driver.button("Rescan") == nullptr);
        driver.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&driver.window));
        driver.connect_lan(address);
        QCOMPARE(driver.take_boxes().join('|'), box);
        QCOMPARE(driver.link_text(), link);
        const bool connected = driver.link_text() == "(LAN)";
        QCOMPARE(drv_command_t::instance()->link_mode() == link_modes::connected, connected);
        QVERIFY(driver.click("USB") && driver.button("Apply") == nullptr);
    }
    // A mismatch ends the connection and leaves the rest as it was.
    QCOMPARE(driver.panel(), "ui_44port_control_widget_t");
    QVERIFY(driver.status_text().startsWith("TMX5044"));
    QVERIFY(!drv_device_t::instance()->is_usb_link());
}

void test_connect_panel::broken_identity_shows_a_panel()
{
    const char *const rows[][3] = {
        {"SHOW:PRODect:ID?", "x44\n", "TMX5044,Serial:SN44001,Version:1.0.0"},
        {"SHOW:PRODect:ID?", "0x2c\n", "TMX5044,Serial:SN44001,Version:1.0.0"},
        {"SHOW:PRODect:ID?", "23\n", "TMX5044,Serial:SN44001,Version:1.0.0"},
        {"SHOW:MNAMe?", "", ",Serial:,Version:"},
    };
    for (const auto &[message, reply, status] : rows) {
        simulator.reset();
        window_driver_t driver;
        QVERIFY(driver.connect_usb("SN44"));
        simulator.script_reply(message, reply);
        QVERIFY(driver.click("Rescan"));
        QCOMPARE(driver.panel(), "ui_empty_widget_t");
        QCOMPARE(driver.window.findChild<ui_central_widget_t *>()->vna_port_count(), 2);
        QCOMPARE(driver.status_text(), status);
        QCOMPARE(driver.link_text(), "(USB)");
        QCOMPARE(driver.take_boxes(), QStringList());
    }
}

void test_connect_panel::long_identity_widens_the_window()
{
    window_driver_t driver;
    const auto labels = driver.window.findChildren<ui_label_t *>();
    const auto identify = [&](const QByteArray &model) {
        simulator.script_reply("SHOW:MNAMe?", model + '\n', 1);
        driver.click("Rescan");
        QCoreApplication::processEvents();
    };
    for (const char *const letter : {"W", "<b>"}) {
        const QByteArray model = QByteArray(letter).repeated(90);
        identify(model);
        QCOMPARE(driver.window.width(), 1000);
        QVERIFY(driver.status_text().endsWith(QChar(0x2026)));
        QCOMPARE(labels[0]->toolTip(), model + ",Serial:SN44001,Version:1.0.0");
        QVERIFY(driver.window.rect().contains(labels[1]->geometry()));
    }
    identify("TMX5044");
    QCOMPARE(driver.status_text(), "TMX5044,Serial:SN44001,Version:1.0.0");
    QCOMPARE(labels[0]->toolTip(), QString());
    QVERIFY(labels[1]->x() - labels[0]->geometry().right() < 10);
    const int text_end =
        labels[0]->x() + labels[0]->fontMetrics().horizontalAdvance(labels[0]->text());
    QVERIFY(labels[1]->x() - text_end < 16);
}

void test_connect_panel::keyboard_misses_the_layout_or_return_does_nothing()
{
    window_driver_t driver;
    const auto stops = [](QWidget *from, int count) {
        QStringList names;
        from->setFocus();
        for (; count > 0; --count) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            auto *const button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
            names.append(button ? button->text() : QApplication::focusWidget()->accessibleName());
        }
        return names;
    };
    QCOMPARE(stops(driver.button("USB"), 2), QStringList({"Instruments", "Rescan"}));
    driver.connect_lan("127.0.0.1");
    QCOMPARE(stops(driver.button("LAN"), 5),
             QStringList({"Octet 1", "Octet 2", "Octet 3", "Octet 4", "Apply"}));
    for (int stop = 1; stop <= 5; ++stop) {
        stops(driver.button("LAN"), stop);
        simulator.take_texts();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(simulator.take_texts().count("*IDN?"), 1);
    }
}

CORVANE_GUI_TEST_MAIN(test_connect_panel)
#include "test_connect_panel.moc"
