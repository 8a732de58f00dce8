// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"
#include "tests/support/simulator.h"
#include "tests/support/window_driver.h"

#include <QGroupBox>
#include <QtTest/QTest>

namespace {

using texts_t = QByteArrayList;

const texts_t color_queries{"GET:COLOR? A", "GET:COLOR? B", "GET:COLOR? C", "GET:COLOR? D"};
const texts_t factory_colors{"SET:COLOR A,Cyan", "SET:COLOR B,Blue", "SET:COLOR C,Red",
                             "SET:COLOR D,Green"};
const texts_t lan_queries{"SHOW:LAN:DHCP?", "SHOW:LAN:IP?",        "SHOW:LAN:SNMask?",
                          "SHOW:LAN:GW?",   "SHOW:LAN:HOST:NAMe?", "SHOW:LAN:MAC:ADDRess?"};
const texts_t fixed_address{"SET:LAN:DHCP 0", "SET:LAN:IP 10.0.0.9", "SET:LAN:SNMask 255.0.0.0",
                            "SET:LAN:GW 10.0.0.1", "SET:LAN:HOST:NAMe 主机"};
const QStringList entered_address{"IP Address:=10.0.0.9", "Subnet Mask:=255.0.0.0",
                                  "Standard Gateway:=10.0.0.1", "Hostname:=主机"};
const QString identity("TMX,TMX5044,SN44001,1.0.0");

texts_t provisioning(const QByteArray &type, const QByteArray &serial, const QByteArray &code)
{
    return {"SYSTem:DEVice:DEFAULT", "SYSTem:DEVice:PRODUCTUG " + type,
            "SYSTem:DEVice:SERIAL:NUM " + serial, "SYSTem:DEVice:PRODUCTUG:ID " + code, "REBOOT"};
}

/// What an instrument answers to a query: "query=reply".
QStringList all_colors(const QString &reply)
{
    QStringList script;
    for (const QByteArray &query : color_queries)
        script.append(query + '=' + reply);
    return script;
}

QStringList colors(const QString &a, const QString &b, const QString &c, const QString &d)
{
    return {"Color VNA Port A:=" + a, "Color VNA Port B:=" + b, "Color VNA Port C:=" + c,
            "Color VNA Port D:=" + d};
}

/// A row of `traffic_or_fields_are_wrong`. A step "write 3" or "read 3" makes the third next one
/// fail. `green` are the ports that the panel paints green once the dialog is closed.
void add_row(const char *tag, const QString &entry, const QStringList &script,
             const QStringList &steps, const texts_t &sent, const QStringList &fields,
             const QString &product = "44", const QStringList &green = {})
{
    QTest::newRow(tag) << entry << script << steps << sent << fields << product << green;
}

} // namespace

class test_device_dialogs : public QObject
{
    Q_OBJECT

private slots:
    void init() { simulator.reset(); }
    void window_is_wrong_or_return_does_something_data();
    void window_is_wrong_or_return_does_something();
    void traffic_or_fields_are_wrong_data();
    void traffic_or_fields_are_wrong();

private:
    static void add_color_rows();
    static void add_lan_rows();
    static void add_console_rows();
    static void add_product_rows();
    bool perform(const QDialog &dialog, const QString &step);

    simulator_t simulator;
};

void test_device_dialogs::window_is_wrong_or_return_does_something_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QString>("group");
    QTest::addColumn<int>("width");
    QTest::addColumn<QStringList>("tab_stops");
    QTest::newRow("LAN") << QByteArray("lan_btn_click_slot") << "LAN Settings" << 400
                         << QStringList{
                                "IP Setting", "IP Address:", "Subnet Mask:", "Standard Gateway:",
                                "Hostname:",  "Refresh",     "Apply"};
    QTest::newRow("COLOR") << QByteArray("color_btn_click_slot") << "Port-LED Settings" << 350
                           << QStringList{"Color VNA Port A:", "Color VNA Port B:",
                                          "Color VNA Port C:", "Color VNA Port D:", "Default"};
    QTest::newRow("PRODUCT") << QByteArray("product_btn_click_slot") << "Product Setting" << 350
                             << QStringList{"Product Type:", "Serial Number:", "Set"};
    QTest::newRow("SCPI") << QByteArray("scpi_btn_click_slot") << "Scpi Test " << 450
                          << QStringList{"Command", "Reply", "Write", "Query", "Read"};
}

void test_device_dialogs::window_is_wrong_or_return_does_something()
{
    QFETCH(QByteArray, slot);
    QFETCH(QString, group);
    QFETCH(int, width);
    QFETCH(QStringList, tab_stops);
    const QString title = QTest::currentDataTag();
    window_driver_t driver;
    const auto open = [&] { QMetaObject::invokeMethod(&driver.window, slot.constData()); };
    open();
    QCOMPARE(driver.take_boxes(), QStringList("Information: Device not connected! [OK, Close]"));
    QVERIFY(driver.connect_usb("SN44"));
    QVERIFY(use_dialog(open, [&](const QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), title);
        QCOMPARE(dialog.width(), width);
        QVERIFY(dialog.minimumSizeHint().width() <= width);
        QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
        QCOMPARE(dialog.findChild<QGroupBox *>()->title(), group);
        simulator.take_texts();
        const quint64 reads = simulator.calls(CORVANE_SIM_READ);
        QCOMPARE(press_return_everywhere(dialog), tab_stops);
        // In the console it queries from both fields and "Query", and presses "Write" and "Read".
        const int count = title == "SCPI" ? 4 : 0;
        QCOMPARE(simulator.take_texts(), texts_t(QVector<QByteArray>(count, "*IDN?").toList()));
        QCOMPARE(simulator.calls(CORVANE_SIM_READ) - reads, quint64(count));
    }));
}

void test_device_dialogs::add_color_rows()
{
    // Also what the panel itself gives port B when there is no colour to read.
    const QStringList b_green{"B", "14"};
    add_row("reply selects the colour", "Color", {"GET:COLOR? B=GREEN\n"}, {}, color_queries,
            colors("Cyan", "Green", "Red", "Green"), "44", b_green);
    add_row("two ports", "Color", {}, {}, color_queries.mid(0, 2),
            colors("Cyan", "Blue", "Cyan off", "Cyan off"), "24");
    add_row("colour in lower case", "Color", {"GET:COLOR? B=green\n"}, {}, color_queries,
            colors("Cyan", "Cyan", "Red", "Green"), "44", b_green);
    add_row("default of unchanged ports", "Color", {}, {"Default"}, color_queries + factory_colors,
            colors("Cyan", "Blue", "Red", "Green"));
    add_row("no answer", "Color", {"GET:COLOR? B="}, {}, color_queries,
            colors("Cyan", "Cyan", "Red", "Green"), "44", b_green);
    add_row("picked colour shows on the panel", "Color", {}, {"Color VNA Port B:=Green"},
            color_queries + texts_t{"SET:COLOR B,Green"}, colors("Cyan", "Green", "Red", "Green"),
            "44", b_green);
    add_row("refused colour does not", "Color", {}, {"write 1", "Color VNA Port B:=Green"},
            color_queries, colors("Cyan", "Green", "Red", "Green"));
    add_row("default of four ports", "Color", all_colors("GREEN\n"), {"Default"},
            color_queries + factory_colors.mid(0, 3) + factory_colors,
            colors("Cyan", "Blue", "Red", "Green"), "44", {"B", "C", "14", "9"});
    add_row("default of two ports", "Color", all_colors("CYAN\n"), {"Default"},
            color_queries.mid(0, 2) + factory_colors.mid(1) + factory_colors.mid(0, 2),
            colors("Cyan", "Blue", "Red off", "Green off"), "24");
}

void test_device_dialogs::add_lan_rows()
{
    const QString ip("IP Address:=192.168.1.150");
    add_row("nothing is read unasked", "LAN", {}, {}, {}, {"IP Setting=DHCP", "IP Address:=..."});
    add_row("fixed address", "LAN", {"SHOW:LAN:DHCP?=0\n"}, {"Refresh"}, lan_queries,
            {"IP Setting=Fixed IP", ip, "Subnet Mask:=255.255.255.0",
             "Standard Gateway:=192.168.1.1", "Hostname:=TMX5044-SN44001",
             "Mac Address:=00:1E:C0:44:00:01"});
    add_row("another mode", "LAN", {"SHOW:LAN:DHCP?=00\n"}, {"Refresh"}, lan_queries,
            {"IP Setting=DHCP", ip});
    add_row("host name beyond ASCII", "LAN", {"SHOW:LAN:HOST:NAMe?=主机-ü\n"}, {"Refresh"},
            lan_queries, {ip, "Hostname:=主机-ü"});
    add_row("refresh breaks off", "LAN", {"SHOW:LAN:DHCP?=0\n"},
            {"Refresh", "IP Address:=10.0.0.9", "read 3", "Refresh"},
            lan_queries + lan_queries.mid(0, 3),
            {"IP Setting=DHCP", "IP Address:=10.0.0.9", "Subnet Mask:=255.255.255.0",
             "Hostname:=", "Mac Address:="});
    add_row("DHCP is applied", "LAN", {}, entered_address + QStringList("Apply"),
            {"SET:LAN:DHCP 1", fixed_address.last()}, {"IP Address:=10.0.0.9"});
    const QStringList fixed = QStringList("IP Setting=Fixed IP") + entered_address;
    add_row("fixed address is applied", "LAN", {}, fixed + QStringList("Apply"), fixed_address,
            fixed);
    add_row("apply breaks off", "LAN", {}, fixed + QStringList{"write 3", "Apply"},
            fixed_address.mid(0, 2), fixed);
}

void test_device_dialogs::add_console_rows()
{
    const texts_t once{"*IDN?"};
    add_row("write and read", "Scpi", {}, {"Write", "Read"}, once, {"Reply=" + identity});
    add_row("query fails to be sent", "Scpi", {}, {"Query", "write 1", "Query"}, once, {"Reply="});
    add_row("query gets no reply", "Scpi", {}, {"Query", "read 1", "Query"}, once + once,
            {"Reply="});
    add_row("read fails", "Scpi", {}, {"Query", "read 1", "Read"}, once, {"Reply=" + identity});
    add_row("write fails", "Scpi", {}, {"Query", "write 1", "Write"}, once, {"Reply=" + identity});
    add_row("blanks", "Scpi", {"  a b  = 1 \n"}, {"Command=  a b  ", "Query"}, {"  a b  "},
            {"Reply= 1 ", "Command=  a b  "});
    add_row("beyond ASCII", "Scpi", {"主机=主 1\n"}, {"Command=主机", "Query"}, {"主机"},
            {"Reply=主 1"});
    add_row("panel shows what was sent", "Scpi", {},
            {"Command=ADD:ROUTe A3", "Write", "Command=SET:COLOR A,Green", "Write"},
            {"ADD:ROUTe A3", "SET:COLOR A,Green"}, {}, "44", {"A", "3"});
}

void test_device_dialogs::add_product_rows()
{
    const QString entry("product_btn_click_slot");
    const struct
    {
        const char *typed;
        const char *serial;
        texts_t sent;
    } rows[] = {
        {"TMX5024A", "SN1", provisioning("TMX5024A", "SN1", "24")},
        {"44TMX", "7", provisioning("44TMX", "7", "44")},
        {"TMX4424", "7", provisioning("TMX4424", "7", "24")},
        {"ABC24", "7", provisioning("ABC24", "7", "99")},
        {"tmx5044", "7", provisioning("tmx5044", "7", "99")},
        {"T-MX_44;", "S _1", provisioning("TMX_44", "S1", "44")},
    };
    for (const auto &row : rows) {
        add_row(
            row.typed, entry, {},
            {QString("Product Type:=") + row.typed, QString("Serial Number:=") + row.serial, "Set"},
            row.sent, {});
    }
    const texts_t untyped = provisioning("", "0123456789", "99");
    for (int write = 1; write <= 5; ++write) {
        add_row(qPrintable(QString("write %1 of the product fails").arg(write)), entry, {},
                {QString("write %1").arg(write), "Set"}, untyped.mid(0, write - 1), {});
    }
}

void test_device_dialogs::traffic_or_fields_are_wrong_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QByteArrayList>("sent");
    QTest::addColumn<QStringList>("fields");
    QTest::addColumn<QString>("product");
    QTest::addColumn<QStringList>("green");
    add_color_rows();
    add_lan_rows();
    add_console_rows();
    add_product_rows();
}

bool test_device_dialogs::perform(const QDialog &dialog, const QString &step)
{
    for (const auto entry : {CORVANE_SIM_WRITE, CORVANE_SIM_READ}) {
        const QString prefix = entry == CORVANE_SIM_WRITE ? "write " : "read ";
        if (step.startsWith(prefix)) {
            simulator.fail_call(entry, step.mid(prefix.size()).toUInt());
            return true;
        }
    }
    return ::perform(dialog, step);
}

void test_device_dialogs::traffic_or_fields_are_wrong()
{
    QFETCH(QString, entry);
    QFETCH(QStringList, script);
    QFETCH(QStringList, steps);
    QFETCH(QByteArrayList, sent);
    QFETCH(QStringList, fields);
    QFETCH(QString, product);
    QFETCH(QStringList, green);
    for (const QString &line : qAsConst(script))
        simulator.script_reply(line.section('=', 0, 0).toUtf8(), line.section('=', 1).toUtf8());
    window_driver_t driver;
    QVERIFY(driver.connect_usb("SN" + product));
    simulator.take_texts();
    const auto open = [&] {
        if (!driver.choose("Tool", entry))
            QMetaObject::invokeMethod(&driver.window, qPrintable(entry));
    };
    QVERIFY(use_dialog(open, [&](const QDialog &dialog) {
        for (const QString &step : qAsConst(steps))
            QVERIFY2(perform(dialog, step), qPrintable(step));
        QCOMPARE(simulator.take_texts(), sent);
        for (const QString &line : qAsConst(fields))
            QCOMPARE(shown(dialog, line.section('=', 0, 0)), line.section('=', 1));
    }));
    QCOMPARE(driver.take_boxes(), QStringList());
    QCOMPARE(driver.painted({QColor("greenyellow")}), green);
}

CORVANE_GUI_TEST_MAIN(test_device_dialogs)
#include "test_device_dialogs.moc"
