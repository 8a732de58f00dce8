// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "tests/support/simulator.h"

#include <QtTest/QTest>

#include <array>
#include <functional>
#include <future>

namespace {

const char *const lan_resource = "TCPIP0::127.0.0.1::INSTR";

drv_command_t &command()
{
    return *drv_command_t::instance();
}
drv_device_t &device()
{
    return *drv_device_t::instance();
}

using operation_t = std::function<bool()>;

} // namespace

Q_DECLARE_METATYPE(operation_t)

class test_instrument_link : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void failed_lan_connect_keeps_the_old_link();
    void resource_name_is_remembered_for_lan_only();
    void operations_send_exact_texts_data();
    void operations_send_exact_texts();
    void lan_apply_stops_at_the_first_failure();
    void replies_lose_exactly_one_character_data();
    void replies_lose_exactly_one_character();
    void failed_read_counts_as_answer();
    void queries_of_two_threads_mix_up();
    void closed_link_mode_sends_nothing_unless_forced();

private:
    simulator_t simulator;
};

void test_instrument_link::init()
{
    simulator.reset();
    QVERIFY(device().visa_is_ready());
    QVERIFY(device().lan_connect("127.0.0.1"));
    command().set_link_mode(link_modes::connected);
}

void test_instrument_link::failed_lan_connect_keeps_the_old_link()
{
    QVERIFY(!device().lan_connect("127.0.0.77"));
    QVERIFY(!device().lan_connect("no address::at all"));
    std::string name;
    QVERIFY(device().link_resource_name(name));
    QCOMPARE(name, std::string(lan_resource));
    std::string reply;
    QVERIFY(command().query("SHOW:PRODect:ID?", reply));
    QCOMPARE(reply, std::string("44"));
}

void test_instrument_link::resource_name_is_remembered_for_lan_only()
{
    std::vector<std::string> list;
    int count = 0;
    device().usb_scan(list, count);
    QVERIFY(device().usb_connect_resource(list.at(1)));
    std::string name = "before";
    QVERIFY(device().link_resource_name(name));
    QCOMPARE(name, std::string());

    QVERIFY(device().link_disconnect());
    name = "before";
    QVERIFY(!device().link_resource_name(name));
    QCOMPARE(name, std::string("before"));
    QVERIFY(!device().usb_connect_resource("USB0::0xA17E::0x2000::NONE::INSTR"));
    QVERIFY(!device().link_write("*RST", 4));
}

void test_instrument_link::operations_send_exact_texts_data()
{
    QTest::addColumn<operation_t>("operation");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QByteArrayList>("texts");
    const auto row = [](const char *name, const operation_t &operation, bool result,
                        const QByteArrayList &texts) {
        QTest::newRow(name) << operation << result << texts;
    };
    row("route", [] { return command().add_route("A", "13"); }, true, {"ADD:ROUTe A13"});
    row("unroute", [] { return command().add_route("D", "0"); }, true, {"ADD:ROUTe D0"});
    row("set colour", [] { return command().set_color("B", "Red"); }, true, {"SET:COLOR B,Red"});
    row("colour query says false though answered",
        [] {
            std::string color;
            const bool result = command().get_color("D", color);
            return color == "GREEN" ? result : true;
        },
        false, {"GET:COLOR? D"});
    row("refresh", [] { return command().device_refresh(); }, true,
        {"SHOW:MNAMe?", "SHOW:SERial?", "SHOW:SVERsion?", "SHOW:PRODect:ID?", "SHOW:LAN:DHCP?",
         "SHOW:LAN:IP?", "SHOW:LAN:SNMask?", "SHOW:LAN:GW?", "SHOW:LAN:HOST:NAMe?",
         "SHOW:LAN:MAC:ADDRess?"});
    row("operation complete", [] { return device().link_opc_wait(); }, true, {"*OPC?"});
    row("bytes as they are", [] { return device().link_write("REBOOT\0", 7); }, true,
        {QByteArray("REBOOT\0", 7)});
}

void test_instrument_link::operations_send_exact_texts()
{
    QFETCH(operation_t, operation);
    QFETCH(bool, result);
    QFETCH(QByteArrayList, texts);
    QCOMPARE(operation(), result);
    QCOMPARE(simulator.take_texts(), texts);
}

void test_instrument_link::lan_apply_stops_at_the_first_failure()
{
    lan_settings_t before;
    QVERIFY(command().lan_read(before));
    simulator.take_texts();
    simulator.fail_call(CORVANE_SIM_WRITE, 3);
    QVERIFY(!command().lan_apply({"0", "bench", "10.0.0.2", "255.0.0.0", "10.0.0.1", ""}));
    QCOMPARE(simulator.take_texts(), QByteArrayList({"SET:LAN:DHCP 0", "SET:LAN:IP 10.0.0.2"}));
}

void test_instrument_link::replies_lose_exactly_one_character_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("answered");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("line end") << QByteArray("1\n") << true << QByteArray("1");
    QTest::newRow("CR LF") << QByteArray("1\r\n") << true << QByteArray("1\r");
    QTest::newRow("no terminator") << QByteArray("TMX") << true << QByteArray("TM");
    QTest::newRow("one character") << QByteArray("\n") << true << QByteArray();
    QTest::newRow("empty") << QByteArray() << false << QByteArray("before");
    QTest::newRow("embedded NUL") << QByteArray("ab\0cd\n", 6) << true << QByteArray("a");
    QTest::newRow("NUL first") << QByteArray("\0cd\n", 4) << false << QByteArray("before");
    QTest::newRow("not UTF-8") << QByteArray("\xc3\x28\n") << true << QByteArray("\xc3\x28");
    QTest::newRow("exactly the buffer") << QByteArray(299, 'x') + '\n'
                                        << true << QByteArray(299, 'x');
    QTest::newRow("more than the buffer") << QByteArray(5000, 'y') << true << QByteArray(299, 'y');
}

void test_instrument_link::replies_lose_exactly_one_character()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, answered);
    QFETCH(QByteArray, text);
    simulator.script_reply("SHOW:TEMPerature?", reply);
    std::string out = "before";
    QCOMPARE(command().query("SHOW:TEMPerature?", out), answered);
    QCOMPARE(QByteArray::fromStdString(out), text);

    // What was left of the reply does not reach the next query.
    QVERIFY(command().query("SHOW:PRODect:ID?", out));
    QCOMPARE(out, std::string("44"));
}

void test_instrument_link::failed_read_counts_as_answer()
{
    std::array<char, 20> buffer{};
    simulator.fail_call(CORVANE_SIM_READ, 1, simulator_t::vi_error_tmo);
    QVERIFY(device().link_query("*OPC?", buffer.data(), buffer.size()));
    QCOMPARE(buffer[0], '\0');
    simulator.script_reply("*OPC?", "");
    QVERIFY(!device().link_opc_wait());
    simulator.fail_call(CORVANE_SIM_WRITE);
    QVERIFY(!device().link_query("*OPC?", buffer.data(), buffer.size()));

    std::string out = "before";
    simulator.fail_call(CORVANE_SIM_READ, 1, simulator_t::vi_error_tmo);
    QVERIFY(!command().query("*IDN?", out));
    QCOMPARE(out, std::string("before"));
}

void test_instrument_link::queries_of_two_threads_mix_up()
{
    const auto ask = [](const char *text, const QByteArray &reply) {
        QByteArrayList replies;
        for (int count = 0; count < 10; ++count) {
            std::array<char, 80> buffer{};
            device().link_query(text, buffer.data(), buffer.size());
            replies.append(buffer.data());
        }
        return replies.count(reply);
    };
    auto other = std::async(std::launch::async, ask, "*OPC?", QByteArray("1\n"));
    QCOMPARE(ask("ROUTes?", "0,0,0,0\n"), 10);
    QCOMPARE(other.get(), 10);
}

void test_instrument_link::closed_link_mode_sends_nothing_unless_forced()
{
    command().set_link_mode(link_modes::not_connected);
    std::string out;
    QVERIFY(!command().send_command("ADD:ROUTe A3"));
    QVERIFY(!command().query("ROUTes?", out));
    QVERIFY(!command().read_reply(out));
    QCOMPARE(simulator.take_texts(), QByteArrayList());
    QVERIFY(command().query("*IDN?", out, true));
    QCOMPARE(simulator.take_texts(), QByteArrayList{"*IDN?"});
}

QTEST_GUILESS_MAIN(test_instrument_link)
#include "test_instrument_link.moc"
