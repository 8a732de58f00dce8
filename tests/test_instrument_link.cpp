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
#include <utility>

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

/// The resource name that the link remembers; "none" when it has none to tell.
QString remembered()
{
    std::string name = "none";
    const bool told = device().link_resource_name(name);
    return told == (name != "none") ? QString::fromStdString(name) : "another name";
}

} // namespace

class test_instrument_link : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void call_or_pause_is_missing();
    void warning_counts_as_success();
    void failed_close_forgets_the_link();
    void link_is_remembered_wrongly();
    void handles_given_are_mixed_up();
    void reply_fills_the_wrong_places();
    void replies_lose_exactly_one_character();
    void failed_read_counts_as_answer();
    void queries_of_two_threads_mix_up();
    void closed_link_mode_sends_nothing_unless_forced();

private:
    /// Makes so many of the next openings fail.
    void fail_opens(int count);

    simulator_t simulator;
};

/// What the program starts with, before anything connects.
void test_instrument_link::initTestCase()
{
    QVERIFY(device().is_usb_link());
    QCOMPARE(int(command().link_mode()), 2);
    QCOMPARE(remembered(), "none");
    QCOMPARE(conversation(simulator, [] { device().usb_connect(); }),
             QString("open 500 ").repeated(10) + "find open");
}

void test_instrument_link::init()
{
    simulator.reset();
    recorded_pauses_t::instance().reset();
    QVERIFY(device().lan_connect("127.0.0.1"));
    command().set_link_mode(link_modes::connected);
}

void test_instrument_link::fail_opens(int count)
{
    for (int nth = 1; nth <= count; ++nth)
        simulator.fail_call(CORVANE_SIM_OPEN, static_cast<unsigned>(nth));
}

void test_instrument_link::call_or_pause_is_missing()
{
    const operation_t reconnect = [] { return device().usb_connect(); };
    const struct
    {
        operation_t operation;
        QString expected;
        int failing_opens = 0;
    } rows[] = {
        {[] { return device().link_write("*CLS", 4); }, "write 5"},
        {[] { return device().link_opc_wait(); }, "write 5 10 read"},
        {[] { return listed_instruments() == 6; }, "find" + QString(" next").repeated(6)},
        {[] { return device().usb_connect_resource(usb_resource); }, "close open"},
        {[] { return device().link_disconnect(); }, "close"},
        {reconnect, "open"},
        {reconnect, QString("open 500 ").repeated(9) + "open", 9},
        {reconnect, QString("open 500 ").repeated(10) + "find open", 10},
    };
    for (const auto &row : rows) {
        init();
        fail_opens(row.failing_opens);
        bool done = false;
        QCOMPARE(conversation(simulator, [&] { done = row.operation(); }), row.expected);
        QVERIFY2(done, qPrintable(row.expected));
    }
}

void test_instrument_link::warning_counts_as_success()
{
    const operation_t read = [] {
        char reply[8] = "";
        return device().link_write("*OPC?", 5) && device().link_read(reply, sizeof reply) != -1;
    };
    const std::pair<corvane_sim_entry, operation_t> rows[] = {
        {CORVANE_SIM_WRITE, [] { return device().link_write("*CLS", 4); }},
        {CORVANE_SIM_WRITE, [] { return device().link_opc_wait(); }},
        {CORVANE_SIM_READ, read},
        {CORVANE_SIM_CLOSE, [] { return device().link_disconnect(); }},
        {CORVANE_SIM_OPEN, [] { return device().usb_connect_resource(usb_resource); }},
        {CORVANE_SIM_OPEN, [] { return device().lan_connect("127.0.0.1"); }},
        {CORVANE_SIM_FIND_RSRC, [] { return listed_instruments() != 0; }},
    };
    for (const auto &[entry, operation] : rows) {
        for (const int status : {0, 1, simulator_t::vi_error_io}) {
            init();
            if (status != 0)
                simulator.fail_call(entry, 1, status);
            QCOMPARE(operation(), status == 0);
        }
    }
}

void test_instrument_link::failed_close_forgets_the_link()
{
    for (const int status : {1, simulator_t::vi_error_io}) {
        simulator.fail_call(CORVANE_SIM_CLOSE, 1, status);
        QVERIFY(!device().link_disconnect());
        QCOMPARE(remembered(), QString(lan_resource));
        QVERIFY(device().link_opc_wait());
    }
    // The next instrument is opened all the same.
    simulator.fail_call(CORVANE_SIM_CLOSE);
    QVERIFY(device().usb_connect_resource(usb_resource));
    QVERIFY(device().link_opc_wait());
}

void test_instrument_link::link_is_remembered_wrongly()
{
    QVERIFY(!device().lan_connect("127.0.0.77"));
    fail_opens(10);
    simulator.fail_call(CORVANE_SIM_FIND_RSRC, 1, 1);
    QVERIFY(!device().usb_connect());
    QCOMPARE(remembered(), QString(lan_resource));
    QVERIFY(device().link_opc_wait());
    fail_opens(11);
    QVERIFY(!device().usb_connect());
    QCOMPARE(remembered(), QString(usb_resource));
    // One that is opened by its name is not remembered.
    QVERIFY(device().usb_connect_resource(usb_resource));
    QCOMPARE(remembered(), QString());
    QVERIFY(device().link_disconnect());
    QCOMPARE(remembered(), "none");
    QVERIFY(!device().link_write("*RST", 4));
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
    } rows[] = {{0, 1, false}, {1, 0, false}, {7, -7, true}};
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

    upgrade_id_t record{1, 2, 3, 4};
    simulator.script_reply("UPGRADE:ID?", " 44x,-6\n", 1);
    QVERIFY(command().upgrade_id_read(record));
    QCOMPARE(record.id, 44);
    QCOMPARE(record.lowest, -6);
    QCOMPARE(record.highest, 3);
    QCOMPARE(record.exact, 4);

    // Fixed is every address but a leased one.
    simulator.take_texts();
    QVERIFY(command().lan_apply({"2", "bench", "10.0.0.2", "255.0.0.0", "10.0.0.1", ""}));
    QCOMPARE(simulator.take_texts().value(1), QByteArray("SET:LAN:IP 10.0.0.2"));
}

void test_instrument_link::replies_lose_exactly_one_character()
{
    // The reply and what is taken from it; without an answer that is what was there before.
    const QPair<QByteArray, QByteArray> rows[] = {
        {"1\n", "1"},
        {"TMX", "TM"},
        {"\n", ""},
        {"", "before"},
        {QByteArray("ab\0cd\n", 6), "a"},
        {QByteArray(299, 'x') + '\n', QByteArray(299, 'x')},
        {QByteArray(5000, 'y'), QByteArray(299, 'y')},
    };
    for (const auto &[reply, text] : rows) {
        simulator.script_reply("SHOW:TEMPerature?", reply, 1);
        std::string out = "before";
        QCOMPARE(command().query("SHOW:TEMPerature?", out), text != "before");
        QCOMPARE(QByteArray::fromStdString(out), text);

        // What was left of the reply does not reach the next query.
        QVERIFY(command().query("SHOW:PRODect:ID?", out));
        QCOMPARE(out, std::string("44"));
    }
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
