// SPDX-License-Identifier: MIT
#include "rpc/port_mapper.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/scripted_server.h"
#include "tests/support/window_driver.h"
#include "visa/entry_points.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QtTest/QTest>

#include <arpa/inet.h>
#include <sys/socket.h>

#include <future>

namespace {

using namespace rpc::vxi11;
using namespace visa;

constexpr ViUInt32 timeout_ms = 150;
constexpr qint64 late_ms = 1000; ///< what a call may take beyond its time-out
constexpr std::size_t room = 20; ///< what reads ask for
constexpr const char *name = "TCPIP0::127.0.0.2::INSTR";
constexpr const char *host = "127.0.0.2";

ViSession manager = null_object;

/// One whole reply, with what a structure says.
template <typename result_t>
std::string reply(const result_t &result, const char *id = "{id}",
                  rpc::accept_status_t status = rpc::accept_status_t::success)
{
    std::string record(rpc::record_header_room);
    rpc::xdr_writer_t out(record);
    rpc::write_reply(out, 0, status);
    out.structure(result);
    record.replace(4, 4, id);
    rpc::end_record(record, 0);
    return record;
}

std::string fine(const char *id = "{id}")
{
    return reply(read_result_t{0, reason_end, "late"}, id);
}

/// A reply whose data claim to have 4 GiB.
std::string claims_much()
{
    std::string record = fine();
    record.replace(record.size() - 8, 4, "\xFF\xFF\xFF\xFF");
    return record;
}

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

ViSession opened(ViUInt32 timeout = timeout_ms, const char *resource = name)
{
    ViSession session = null_object;
    viOpen(manager, resource, 0, 0, &session);
    viSetAttribute(session, attribute_timeout, timeout);
    return session;
}

ViStatus write(ViSession session, const std::string &text)
{
    return viWrite(session, reinterpret_cast<const ViUInt8 *>(text.data()),
                   static_cast<ViUInt32>(text.size()), nullptr);
}

ViStatus read(ViSession session, std::string &text)
{
    ViUInt8 buffer[2 * room];
    std::fill(std::begin(buffer), std::end(buffer), ViUInt8{'#'});
    ViUInt32 count = 0;
    const ViStatus status = viRead(session, buffer, room, &count);
    text.assign(buffer, buffer + std::min<std::size_t>(count, room));
    return buffer[room] == '#' ? status : error_system;
}

/// Until the end of the program a name server that never answers.
bool mute_name_server()
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(53);
    inet_pton(AF_INET, host, &address.sin_addr);
    return bind(socket(AF_INET, SOCK_DGRAM, 0), reinterpret_cast<const sockaddr *>(&address),
                sizeof address) == 0;
}

} // namespace

/// Runs in a network of its own, with no other VISA library than ours.
class test_visa_lan : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCOMPARE(viOpenDefaultRM(&manager), success); }
    void bad_reply_harms_or_is_believed();
    void open_takes_too_long_or_takes_anything();
    void instrument_behind_a_silent_address_is_not_reached();
    void locked_instrument_is_taken_for_a_missing_one();
    void message_is_cut_wrongly();
    void session_leaves_a_lock_or_link_behind();
    void lost_instrument_comes_back_unasked();
    void waiting_call_holds_up_another_session_or_its_close();
    void program_misses_what_lan_allows_or_survives_no_reboot();
};

void test_visa_lan::bad_reply_harms_or_is_believed()
{
    const std::string half = fine().substr(0, 30);
    const std::string own_timeout = reply(read_result_t{15, 0, {}});
    const std::string too_long = reply(read_result_t{0, reason_end, "123456789012345678901"});
    const std::string refused =
        reply(error_result_t{}, "{id}", rpc::accept_status_t::procedure_unavailable);
    // In fragments of 20 bytes, of none, and the rest, whose header comes in two pieces.
    const std::string rest = fine().substr(24);
    const std::string begun =
        std::string("\0\0\0\x14", 4) + fine().substr(4, 20) + std::string("\0\0\0\0\x80\0", 6);
    const std::string ended = std::string(1, '\0') + static_cast<char>(rest.size()) + rest;
    const std::string part = std::string("\0\0\2\0", 4) + std::string(512, '\0');
    const QByteArray call = hex("80000018 00000001 00000000 00000002 00000000 00000000 00000000");
    const struct
    {
        std::vector<std::string> pieces;
        ViStatus status;
        bool closes = false;
        int pause_ms = 0;
        bool repeats = false;
    } rows[] = {
        {{begun, ended}, success},
        {{}, error_timeout},
        {{half}, error_timeout},
        {{fine()}, error_timeout, false, 600},                           // late
        {{std::string("\0\0\0\1x", 5)}, error_timeout, false, 20, true}, // drips
        {{std::string(4000, '\0')}, error_timeout, false, 0, true},      // no bytes, no end
        {{own_timeout}, error_timeout},
        {{}, error_connection_lost, true},
        {{half}, error_connection_lost, true},
        {{reply(read_result_t{4, 0, {}})}, error_connection_lost}, // no such link
        {{fine("\1\2\3\4")}, error_io},
        {{too_long}, error_io},
        {{claims_much()}, error_io},
        {{part + part}, error_io},                     // each is short enough
        {{std::string("\xFF\xFF\xFF\xFF")}, error_io}, // a fragment of 2 GiB
        {{std::string("\x80\0\0\4what", 8)}, error_io},
        {{call.toStdString()}, error_io},
        {{fine() + fine()}, error_io},
        {{reply(read_result_t{0, 0, {}})}, error_io}, // neither data nor a reason
        {{reply(read_result_t{17, 0, {}})}, error_io},
        {{refused}, error_operation_not_supported},
    };
    for (const auto &row : rows) {
        scripted_server_t server(host, {static_cast<std::uint32_t>(procedure_t::device_read),
                                        row.pieces, std::chrono::milliseconds(row.pause_ms),
                                        row.closes, row.repeats});
        const ViSession session = opened();
        std::string text;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(write(session, "*IDN?"), success);
        QCOMPARE(read(session, text), row.status);
        QVERIFY(timer.elapsed() < timeout_ms + late_ms);
        QCOMPARE(row.status == error_timeout && timer.elapsed() < timeout_ms,
                 row.pieces == std::vector{own_timeout});
        // A lost connection stays lost; after everything else the next query has its own reply.
        const bool is_lost = row.status == error_connection_lost;
        QCOMPARE(write(session, "*IDN?"), is_lost ? row.status : success);
        QCOMPARE(read(session, text), is_lost ? row.status : success);
        QCOMPARE(text, std::string(is_lost ? "" : "fine"));
        if (row.status == error_timeout)
            QCOMPARE(server.links(), 2U);
        QCOMPARE(viClose(session), success);
        QVERIFY(opened() != null_object);
    }
}

void test_visa_lan::open_takes_too_long_or_takes_anything()
{
    const auto script = [](std::uint32_t procedure, std::vector<std::string> pieces) {
        return script_t{procedure, std::move(pieces), {}, false, false};
    };
    const auto port = [](std::uint32_t number) { return reply(rpc::port_mapper::port_t{number}); };
    const auto link = [](std::uint32_t error) {
        return reply(create_link_result_t{error, 0, 0, 0});
    };
    constexpr std::uint32_t mapper = rpc::port_mapper::get_procedure;
    constexpr auto create_link = static_cast<std::uint32_t>(procedure_t::create_link);
    const struct
    {
        const char *resource;
        script_t script;
        ViStatus status;
        int least_ms = 0;
    } rows[] = {{"", {}, error_invalid_resource_name},
                {"TCPIP0::", {}, error_invalid_resource_name},
                {"TCPIP0::a b::INSTR", {}, error_invalid_resource_name},
                {"TCPIP0::127.0.0.3::INSTR", {}, error_resource_not_found},
                {"TCPIP0::unknown.name::INSTR", {}, error_resource_not_found, 1000},
                {name, script(mapper, {}), error_resource_not_found, 1000},
                {name, script(create_link, {}), error_resource_not_found, 1000},
                {name, script(mapper, {port(0)}), error_resource_not_found},
                {name, script(mapper, {port(65647)}), error_resource_not_found},
                {name, script(create_link, {link(3)}), error_resource_not_found},
                {name, script(create_link, {link(11)}), error_resource_locked}};
    QVERIFY(mute_name_server());
    for (const auto &row : rows) {
        const scripted_server_t server(host, row.script);
        ViSession session = 1;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(viOpen(manager, row.resource, 0, 0, &session), row.status);
        QCOMPARE(session, null_object);
        QVERIFY(timer.elapsed() >= row.least_ms && timer.elapsed() < row.least_ms + late_ms);
    }
    ViFindList list = 1;
    ViUInt32 count = 1;
    char found[256];
    QCOMPARE(viFindRsrc(manager, "TCPIP?*", &list, &count, found), error_resource_not_found);
    QCOMPARE(count, 0U);
}

void test_visa_lan::instrument_behind_a_silent_address_is_not_reached()
{
    const scripted_server_t silent("127.0.0.3", {rpc::port_mapper::get_procedure, {}});
    scripted_server_t server(host, {static_cast<std::uint32_t>(procedure_t::device_read), {}});
    const ViSession session = opened(timeout_ms, "TCPIP0::two.addresses::INSTR");
    char address[256] = "";
    QCOMPARE(viGetAttribute(session, attribute_tcpip_address, address), success);
    QCOMPARE(address, host);
    // The fresh link behind a time-out leads to the same instrument.
    std::string text;
    QCOMPARE(read(session, text), error_timeout);
    QCOMPARE(read(session, text), success);
    QCOMPARE(server.links(), 2U);
    QCOMPARE(viClose(session), success);
}

void test_visa_lan::locked_instrument_is_taken_for_a_missing_one()
{
    const scripted_server_t first("127.0.0.3",
                                  {static_cast<std::uint32_t>(procedure_t::create_link),
                                   {reply(create_link_result_t{11, 0, 0, 0})}});
    ViSession session = null_object;
    QCOMPARE(viOpen(manager, "TCPIP0::two.addresses::INSTR", 0, 0, &session),
             error_resource_locked);
}

void test_visa_lan::message_is_cut_wrongly()
{
    for (const std::uint32_t taken : {0U, 8U}) {
        scripted_server_t server(host, {static_cast<std::uint32_t>(procedure_t::device_write),
                                        {reply(error_number_result_t{0, taken})}});
        QCOMPARE(write(opened(), "*IDN?"), error_io);
    }
    scripted_server_t server(host, {}, 1000);
    const ViSession session = opened();
    const std::string image = std::string(2055, 'x') + '\0';
    QCOMPARE(write(session, image), success);
    viSetAttribute(session, attribute_send_end_enable, 0);
    QCOMPARE(write(session, "part"), success);
    const auto writes = server.writes();
    const std::uint32_t flags[] = {0, 0, flag_end, 0};
    std::string data;
    for (std::size_t piece = 0; piece < writes.size(); ++piece) {
        QCOMPARE(writes[piece].first, flags[piece]);
        data += writes[piece].second;
    }
    QCOMPARE(writes.size(), std::size(flags));
    QCOMPARE(data, image + "part");
}

void test_visa_lan::session_leaves_a_lock_or_link_behind()
{
    const std::string part = reply(read_result_t{0, reason_term_char, "fi"});
    scripted_server_t server(host, {static_cast<std::uint32_t>(procedure_t::device_read), {part}});
    const ViSession owner = opened();
    const ViSession other = opened();
    QCOMPARE(viLock(owner, access_exclusive_lock, timeout_immediate, nullptr, nullptr), success);
    QCOMPARE(write(other, "*IDN?"), error_resource_locked);
    auto lock = std::async(std::launch::async, [other] {
        return viLock(other, access_exclusive_lock, timeout_infinite, nullptr, nullptr);
    });
    QCOMPARE(lock.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    QCOMPARE(viClose(owner), success);
    QCOMPARE(lock.get(), success);
    QCOMPARE(server.destroyed_links(), 1U);
    QCOMPARE(write(other, "*IDN?"), success);
    viSetAttribute(other, attribute_term_char, 'i');
    viSetAttribute(other, attribute_term_char_enable, 1);
    std::string text;
    QCOMPARE(read(other, text), success_term_char);
    QCOMPARE(text, std::string("fi"));
    QCOMPARE(viClose(other), success);
}

void test_visa_lan::lost_instrument_comes_back_unasked()
{
    // It is there at first, then refuses or is silent, and is there again.
    for (const bool is_silent : {false, true}) {
        const script_t mute_core{static_cast<std::uint32_t>(procedure_t::device_read), {}};
        auto server = std::make_unique<scripted_server_t>(host, mute_core);
        const ViSession session = opened();
        std::string text;
        QCOMPARE(read(session, text), error_timeout);
        server.reset();
        if (is_silent)
            server = std::make_unique<scripted_server_t>(
                host, script_t{rpc::port_mapper::get_procedure, {}});
        QCOMPARE(write(session, "*IDN?"), error_connection_lost);
        server.reset();
        server = std::make_unique<scripted_server_t>(host, script_t());
        QCOMPARE(write(session, "*IDN?"), error_connection_lost);
    }
}

void test_visa_lan::waiting_call_holds_up_another_session_or_its_close()
{
    scripted_server_t server(host, {static_cast<std::uint32_t>(procedure_t::device_read), {}});
    const ViSession waiting = opened(timeout_infinite);
    const ViSession other = opened();
    auto read_of_waiting = std::async(std::launch::async, [waiting] {
        std::string text;
        return read(waiting, text);
    });
    QTest::qWait(50);
    QElapsedTimer timer;
    timer.start();
    std::string text;
    QCOMPARE(write(other, "*IDN?"), success);
    QCOMPARE(read(other, text), success);
    QCOMPARE(viClose(waiting), success);
    QCOMPARE(read_of_waiting.get(), error_invalid_object);
    QVERIFY(timer.elapsed() < late_ms);
}

void test_visa_lan::program_misses_what_lan_allows_or_survives_no_reboot()
{
    QProcess simulator;
    simulator.start(CORVANE_SIM, {"lan"});
    QTRY_VERIFY(simulator.canReadLine());
    QVERIFY(simulator.readLine().startsWith("TCPIP0::127.0.0.1::INSTR"));
    window_driver_t driver;
    driver.connect_lan("127.0.0.1");
    QCOMPARE(driver.link_text(), "(LAN)");
    QVERIFY(driver.click("Reset"));
    QVERIFY(driver.click("C") && driver.click("8"));
    QCOMPARE(driver.lit_ports(), QStringList({"C", "8"}));
    const char *const resource = "TCPIP0::127.0.0.1::INSTR";
    ViSession session = opened(timeout_ms, resource);
    QCOMPARE(write(session, std::string("REBOOT", sizeof "REBOOT")), success);
    std::string text;
    QCOMPARE(read(session, text), error_connection_lost);
    QCOMPARE(viClose(session), success);
    QTRY_VERIFY((session = opened(timeout_ms, resource)) != null_object);
    // What is clicked without a new connection switches nothing.
    QVERIFY(driver.click("C") && driver.click("7"));
    QCOMPARE(write(session, "ROUTes?"), success);
    QCOMPARE(read(session, text), success);
    QCOMPARE(text, std::string("0,0,0,0\n"));
    driver.connect_lan("127.0.0.1");
    QVERIFY(driver.lit_ports().isEmpty() && driver.take_boxes().isEmpty());
    QVERIFY(driver.click("C") && driver.click("7"));
    QCOMPARE(driver.lit_ports(), QStringList({"C", "7"}));
    QVERIFY(use_dialog([&] { driver.choose("Tool", "Scpi"); },
                       [](const QDialog &dialog) {
                           QVERIFY(perform(dialog, "Query"));
                           QCOMPARE(shown(dialog, "Reply"), "TMX,TMX5044,SN44002,1.0.0");
                       }));
    QVERIFY(driver.choose("Tool", "Upgrade") && driver.choose("Tool", "LAN"));
    QCOMPARE(driver.take_boxes(),
             QStringList({"Information: Please upgrade using USB! [OK, Close]",
                          "Information: Please change LAN using USB! [OK, Close]"}));
    simulator.terminate();
    QVERIFY(simulator.waitForFinished());
}

CORVANE_GUI_TEST_MAIN(test_visa_lan)
#include "test_visa_lan.moc"
