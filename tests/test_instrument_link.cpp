// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "tests/support/conversation.h"
#include "tests/support/recorded_pauses.h"
#include "tests/support/simulator.h"

#include <QtTest/QTest>

#include <array>
#include <functional>
#include <future>

namespace {

const char *const lan_resource = "TCPIP0::127.0.0.1::INSTR";
const char *const usb_resource =
    "USB0::0xA17E::0x2000::SN44001::INSTR"; ///< the first that is found

drv_command_t &command()
{
    return *drv_command_t::instance();
}
drv_device_t &device()
{
    return *drv_device_t::instance();
}

using operation_t = std::function<bool()>;

/// Searches for USB instruments and answers how many were listed.
int listed_instruments()
{
    std::vector<std::string> list;
    int count = -1;
    const bool found = device().usb_scan(list, count) == 1;
    return found && count == static_cast<int>(list.size()) ? count : 0;
}

} // namespace

Q_DECLARE_METATYPE(operation_t)

class test_instrument_link : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void call_or_pause_is_missing_data();
    void call_or_pause_is_missing();
    void warning_counts_as_success_data();
    void warning_counts_as_success();
    void failed_close_forgets_the_link();
    void reopened_link_is_remembered_wrongly();
    void handles_given_are_mixed_up();
    void reply_fills_the_wrong_places();
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

/// What the program starts with, before anything connects.
void test_instrument_link::initTestCase()
{
    QVERIFY(device().is_usb_link());
    QCOMPARE(int(command().link_mode()), 2);
    std::string name;
    QVERIFY(!device().link_resource_name(name));
    QCOMPARE(conversation(simulator, [] { device().usb_connect(); }),
             QString("open 500 ").repeated(10) + "find open");
}

void test_instrument_link::init()
{
    simulator.reset();
    recorded_pauses_t::instance().reset();
    QVERIFY(device().visa_is_ready());
    QVERIFY(device().lan_connect("127.0.0.1"));
    command().set_link_mode(link_modes::connected);
}

void test_instrument_link::call_or_pause_is_missing_data()
{
    QTest::addColumn<operation_t>("operation");
    QTest::addColumn<int>("failing_opens");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const operation_t &operation, const QString &expected,
                        int failing_opens = 0) {
        QTest::newRow(name) << operation << failing_opens << expected;
    };
    row(
        "write", [] { return device().link_write("*CLS", 4); }, "write 5");
    row(
        "query", [] { return device().link_opc_wait(); }, "write 5 10 read");
    row(
        "search", [] { return listed_instruments() == 6; }, "find" + QString(" next").repeated(6));
    row(
        "connect USB", [] { return device().usb_connect_resource(usb_resource); }, "close open");
    row(
        "disconnect", [] { return device().link_disconnect(); }, "close");
    const operation_t reconnect = [] { return device().usb_connect(); };
    row("connect again", reconnect, "open");
    row("at the tenth attempt", reconnect, QString("open 500 ").repeated(9) + "open", 9);
    row("after ten attempts", reconnect, QString("open 500 ").repeated(10) + "find open", 10);
}

void test_instrument_link::call_or_pause_is_missing()
{
    QFETCH(operation_t, operation);
    QFETCH(int, failing_opens);
    for (int nth = 1; nth <= failing_opens; ++nth)
        simulator.fail_call(CORVANE_SIM_OPEN, static_cast<unsigned>(nth));
    bool done = false;
    QTEST(conversation(simulator, [&] { done = operation(); }), "expected");
    QVERIFY(done);
}

void test_instrument_link::warning_counts_as_success_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<operation_t>("operation");
    const auto row = [](const char *name, corvane_sim_entry entry, const operation_t &operation) {
        QTest::newRow(name) << static_cast<int>(entry) << operation;
    };
    row("write", CORVANE_SIM_WRITE, [] { return device().link_write("*CLS", 4); });
    row("query", CORVANE_SIM_WRITE, [] { return device().link_opc_wait(); });
    row("read", CORVANE_SIM_READ, [] {
        char reply[8] = "";
        return device().link_write("*OPC?", 5) && device().link_read(reply, sizeof reply) != -1;
    });
    row("close", CORVANE_SIM_CLOSE, [] { return device().link_disconnect(); });
    row("USB", CORVANE_SIM_OPEN, [] { return device().usb_connect_resource(usb_resource); });
    row("LAN", CORVANE_SIM_OPEN, [] { return device().lan_connect("127.0.0.1"); });
    row("search", CORVANE_SIM_FIND_RSRC, [] { return listed_instruments() != 0; });
}

void test_instrument_link::warning_counts_as_success()
{
    QFETCH(int, entry);
    QFETCH(operation_t, operation);
    for (const int status : {1, simulator_t::vi_error_io}) {
        init();
        simulator.fail_call(static_cast<corvane_sim_entry>(entry), 1, status);
        QVERIFY(!operation());
    }
    init();
    QVERIFY(operation());
}

void test_instrument_link::failed_close_forgets_the_link()
{
    for (const int status : {1, simulator_t::vi_error_io}) {
        simulator.fail_call(CORVANE_SIM_CLOSE, 1, status);
        QVERIFY(!device().link_disconnect());
        std::string name;
        QVERIFY(device().link_resource_name(name));
        QCOMPARE(name, std::string(lan_resource));
        QVERIFY(device().link_opc_wait());
    }
    // The next instrument is opened all the same.
    simulator.fail_call(CORVANE_SIM_CLOSE);
    QVERIFY(device().usb_connect_resource(usb_resource));
    QVERIFY(device().link_opc_wait());
}

void test_instrument_link::reopened_link_is_remembered_wrongly()
{
    const auto remembered = [] {
        std::string name = "none";
        device().link_resource_name(name);
        return QString::fromStdString(name);
    };
    const auto lose_instrument = [this](int openings) {
        for (int nth = 1; nth <= openings; ++nth)
            simulator.fail_call(CORVANE_SIM_OPEN, static_cast<unsigned>(nth));
    };
    lose_instrument(10);
    simulator.fail_call(CORVANE_SIM_FIND_RSRC, 1, 1);
    QVERIFY(!device().usb_connect());
    QCOMPARE(remembered(), QString(lan_resource));
    lose_instrument(11);
    QVERIFY(!device().usb_connect());
    QCOMPARE(remembered(), QString(usb_resource));
    QVERIFY(device().lan_connect("127.0.0.1"));
    lose_instrument(10);
    QVERIFY(device().usb_connect());
    QCOMPARE(remembered(), QString(usb_resource));
    QVERIFY(device().usb_connect());
}

/// The operations on a session that the program itself has no use for.
void test_instrument_link::handles_given_are_mixed_up()
{
    ViSession session = 0;
    QCOMPARE(device().session_open(usb_resource, session), vi_success);
    QCOMPARE(device().set_session_timeout(session, 1234), vi_success);
    QCOMPARE(device().session_timeout(session), ViUInt32(1234));
    QCOMPARE(device().session_timeout(0), ViUInt32(0));
    QCOMPARE(device().session_clear(session), vi_success);
    QVERIFY(device().session_clear(0) < vi_success);
    QVERIFY(device().session_close_with_manager(session));
    QVERIFY(device().session_clear(session) < vi_success);
    QVERIFY(!device().lan_connect("127.0.0.1"));
    device().reopen_default_rm();
    QVERIFY(device().lan_connect("127.0.0.1"));

    const struct
    {
        int session_status, manager_status;
        bool closed;
    } rows[] = {{0, 1, false}, {1, 0, false}, {-1, 0, false}, {7, -7, true}};
    for (const auto &row : rows) {
        simulator.fail_call(CORVANE_SIM_CLOSE, 1, row.session_status);
        simulator.fail_call(CORVANE_SIM_CLOSE, 2, row.manager_status);
        QCOMPARE(device().session_close_with_manager(session), row.closed);
    }

    simulator.fail_call(CORVANE_SIM_OPEN_DEFAULT_RM);
    QCOMPARE(device().visa_init(), 100);
    QVERIFY(!device().visa_is_ready());
    simulator.fail_call(CORVANE_SIM_OPEN_DEFAULT_RM, 1, 1);
    QCOMPARE(device().visa_init(), 1);
    QVERIFY(device().visa_is_ready());
    QCOMPARE(device().visa_init(), 1);
}

void test_instrument_link::reply_fills_the_wrong_places()
{
    std::string out;
    simulator.script_reply("ROUTes?", "1,2,3,4,5,6\n", 1);
    QVERIFY(command().route_of("D", out));
    QCOMPARE(out, std::string("4"));
    simulator.script_reply("ROUTes?", "7,8,9\n", 2);
    QVERIFY(command().route_of_ab("B", out));
    QCOMPARE(out, std::string("8"));
    QVERIFY(command().route_of_ab("C", out));
    QCOMPARE(out, std::string("3"));
    QVERIFY(command().add_route("C", "11"));
    simulator.fail_call(CORVANE_SIM_WRITE);
    QVERIFY(!command().add_route("C", "12"));
    QVERIFY(command().route_of_ab("C", out));
    QCOMPARE(out, std::string("11"));
    simulator.script_reply("ROUTes?", "5\n", 1);
    QVERIFY(command().route_of("D", out));
    QCOMPARE(out, std::string());

    upgrade_id_t record{1, 2, 3, 4};
    simulator.script_reply("UPGRADE:ID?", " 44x,-6\n", 1);
    QVERIFY(command().upgrade_id_read(record));
    QCOMPARE(record.id, 44);
    QCOMPARE(record.lowest, -6);
    QCOMPARE(record.highest, 3);
    QCOMPARE(record.exact, 4);
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
    QVERIFY(!command().lan_apply({"2", "bench", "10.0.0.2", "255.0.0.0", "10.0.0.1", ""}));
    QCOMPARE(simulator.take_texts(), QByteArrayList({"SET:LAN:DHCP 2", "SET:LAN:IP 10.0.0.2"}));
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
    recorded_pauses_t::instance().wait_for_real(true);
    auto other = std::async(std::launch::async, ask, "*OPC?", QByteArray("1\n"));
    QCOMPARE(ask("ROUTes?", "0,0,0,0\n"), 10);
    QCOMPARE(other.get(), 10);
}

void test_instrument_link::closed_link_mode_sends_nothing_unless_forced()
{
    std::string out;
    for (const auto mode : {link_modes::upgrading, link_modes::not_connected}) {
        command().set_link_mode(mode);
        QVERIFY(!command().send_command("ADD:ROUTe A3"));
        QVERIFY(!command().query("ROUTes?", out));
        QVERIFY(!command().read_reply(out));
        QCOMPARE(simulator.take_texts(), QByteArrayList());
    }
    QVERIFY(command().query("*IDN?", out, true));
    QCOMPARE(simulator.take_texts(), QByteArrayList{"*IDN?"});
}

QTEST_GUILESS_MAIN(test_instrument_link)
#include "test_instrument_link.moc"
