// SPDX-License-Identifier: MIT
#include "sim/visa/sim_control.h"
#include "sim/visa/visa_exports.h"

#include <QtTest/QTest>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <chrono>
#include <future>
#include <thread>
#include <utility>

namespace {

using namespace sim::visa;

const char *const usb = "USB0::0xA17E::0x2000::S44::INSTR";
const char *const lan = "TCPIP0::127.0.0.1::INSTR";
const char *const slow = "USB0::0xA17E::0x2000::S21::INSTR";

// The first instrument is on USB and LAN, the second takes its time.
const char *const fleet = R"({"default_timeout_ms": 60, "reboot_ms": 80, "instruments": [
    {"product": 44, "serial": "S44", "resources": [
        "USB0::0xA17E::0x2000::S44::INSTR", "TCPIP0::127.0.0.1::INSTR"]},
    {"product": 21, "serial": "S21", "response_delay_ms": 150,
     "resources": ["USB0::0xA17E::0x2000::S21::INSTR"]},
    {"identity": "MAKER,FG,1,2", "resources": ["USB1::0x0A11::0x0588::FG::INSTR"]}]})";

const QByteArray identity("TMX,TMX5044,S44,1.0.0\n");

ViSession manager = null_object;

ViSession opened(const char *name)
{
    ViSession session = null_object;
    return viOpen(manager, name, 0, 200, &session) == success ? session : null_object;
}

ViStatus write(ViSession session, const QByteArray &text)
{
    return viWrite(session, reinterpret_cast<const ViUInt8 *>(text.constData()),
                   static_cast<ViUInt32>(text.size()), nullptr);
}

std::pair<ViStatus, QByteArray> read(ViSession session, ViUInt32 count = 300)
{
    QByteArray buffer(static_cast<int>(count), '#');
    ViUInt32 length = 99;
    const ViStatus status =
        viRead(session, reinterpret_cast<ViUInt8 *>(buffer.data()), count, &length);
    return {status, buffer.left(static_cast<int>(length))};
}

QByteArray query(ViSession session, const QByteArray &text)
{
    const ViStatus written = write(session, text);
    return written == success ? read(session).second : QByteArray("not written");
}

corvane_sim_fault_t fault(corvane_sim_fault_kind_t kind, corvane_sim_entry_t entry,
                          std::uint32_t nth, std::int64_t value = 0)
{
    corvane_sim_fault_t result{};
    result.kind = kind;
    result.entry = entry;
    result.nth = nth;
    result.value = value;
    return result;
}

QByteArray log_text(size_t index)
{
    QByteArray bytes(static_cast<int>(corvane_sim_log_entry(index, nullptr, nullptr, nullptr, 0)),
                     '#');
    corvane_sim_log_entry(index, nullptr, nullptr, bytes.data(), static_cast<size_t>(bytes.size()));
    return bytes;
}

} // namespace

class test_sim_visa : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void search_matches_as_visa_defines_data();
    void search_matches_as_visa_defines();
    void found_names_come_one_by_one();
    void every_spelling_opens_the_same_resource_data();
    void every_spelling_opens_the_same_resource();
    void read_hands_out_the_reply_in_pieces();
    void term_char_and_end_follow_the_attributes();
    void unread_reply_stays_until_interrupted_or_cleared();
    void read_ends_at_the_time_out_data();
    void read_ends_at_the_time_out();
    void waiting_session_does_not_block_another();
    void attributes_have_their_own_size();
    void bad_arguments_give_a_status();
    void closing_the_manager_closes_everything();
    void unplugging_ends_a_waiting_read();
    void reboot_kills_all_sessions_and_comes_back();
    void fault_hits_the_call_it_is_meant_for_data();
    void fault_hits_the_call_it_is_meant_for();
    void delayed_read_misses_its_time_out();
    void faulty_call_counts_for_its_resource_only();
    void scripted_reply_replaces_the_instrument();
    void log_holds_the_exact_bytes();
    void image_reaches_the_test_byte_for_byte();
    void bad_fleet_leaves_the_old_one();
    void thousand_instruments_are_found_and_opened();
    void threads_use_their_sessions_at_once();

private:
    QTemporaryDir folder;
};

void test_sim_visa::initTestCase()
{
    const QString path = folder.filePath(QStringLiteral("fleet \u6d4b\u8bd5.json"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(fleet) > 0);
    file.close();
    qputenv("CORVANE_SIM_FLEET", QFile::encodeName(path));
    QCOMPARE(viOpenDefaultRM(&manager), success);
}

void test_sim_visa::init()
{
    corvane_sim_reset();
}

void test_sim_visa::search_matches_as_visa_defines_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<int>("count"); // -1: invalid
    const auto row = [](const char *expression, int count) {
        QTest::newRow(expression) << QByteArray(expression) << count;
    };
    row("USB?*INSTR", 3);
    row("usb?*instr", 3);
    row("?*INSTR", 4);
    row("?*", 4);
    row("TCPIP?*INSTR", 1);
    row("USB[0-9]*::?*INSTR", 3);
    row("USB[^0]::?*", 1);
    row("USB1+::?*", 1);
    row("(USB|TCPIP)0::?*", 3);
    row("USB0::?*|TCPIP?*", 3);
    row("?*::S(44|2[0-9])::INSTR", 2);
    row("?*127\\.0?*", 1);
    row("USB0", 0);
    row("GPIB?*INSTR", 0);
    row("USB\\?*INSTR", 0);
    row("(?*)*(?*)*(?*)*#", 0);
    for (const char *invalid : {"", "*", "USB[", "USB[]", "USB(", "USB)", "a||b", "USB[9-0]",
                                "USB\\", "USB**", "USB?*INSTR{VI_ATTR_MODEL_CODE==1}"})
        row(invalid, -1);
}

void test_sim_visa::search_matches_as_visa_defines()
{
    QFETCH(QByteArray, expression);
    QFETCH(int, count);
    ViFindList list = 77;
    ViUInt32 found = 77;
    char name[find_buffer_bytes] = "";
    const ViStatus status = viFindRsrc(manager, expression.constData(), &list, &found, name);
    const ViStatus expected_failure =
        count < 0 ? error_invalid_expression : error_resource_not_found;
    QCOMPARE(status, count > 0 ? success : expected_failure);
    if (count >= 0)
        QCOMPARE(found, static_cast<ViUInt32>(count));
}

void test_sim_visa::found_names_come_one_by_one()
{
    ViFindList list = null_object;
    ViUInt32 count = 0;
    char name[find_buffer_bytes] = "";
    QCOMPARE(viFindRsrc(manager, "USB?*INSTR", &list, &count, name), success);
    QCOMPARE(name, usb);
    QCOMPARE(viFindNext(list, name), success);
    QCOMPARE(name, slow);
    QCOMPARE(viFindNext(list, name), success);
    QCOMPARE(viFindNext(list, name), error_resource_not_found);
    QCOMPARE(viClose(list), success);
    QCOMPARE(viFindNext(list, name), error_invalid_object);
    corvane_sim_unplug(usb);
    QCOMPARE(viFindRsrc(manager, "USB?*INSTR", nullptr, nullptr, name), success);
    QCOMPARE(name, slow);
}

void test_sim_visa::every_spelling_opens_the_same_resource_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("status");
    for (const char *name :
         {"USB0::0xA17E::0x2000::S44::INSTR", "USB::0xa17e::0x2000::s44::instr",
          "USB0::0xA17E::0x2000::S44::0::INSTR", "USB0::41342::8192::S44",
          "TCPIP0::127.0.0.1::INSTR", "tcpip::127.0.0.1::inst0::INSTR", "TCPIP::127.0.0.1"})
        QTest::newRow(name) << QByteArray(name) << success;
    for (const char *name : {"USB1::0xA17E::0x2000::S44::INSTR", "USB0::0xA17E::0x2000::S44::1",
                             "TCPIP0::127.0.0.9::INSTR", "TCPIP0::127.0.0.1::inst1::INSTR",
                             "TCPIP0::127.0.0.1::5025::SOCKET", "GPIB0::5::INSTR", "ASRL1::INSTR"})
        QTest::newRow(name) << QByteArray(name) << error_resource_not_found;
    for (const char *name :
         {"", "USB0", "USB0::INSTR", "USB0::0xA17E::S44::INSTR", "TCPIP0::::INSTR",
          "TCPIPX::127.0.0.1::INSTR", "USB0::0xG17E::0x2000::S44::INSTR",
          "USB0::0x1A17E::0x2000::S44::INSTR", "HOUSE0::1::INSTR"})
        QTest::addRow("'%s'", name) << QByteArray(name) << error_invalid_resource_name;
}

void test_sim_visa::every_spelling_opens_the_same_resource()
{
    QFETCH(QByteArray, name);
    QFETCH(int, status);
    ViSession session = 77;
    QCOMPARE(viOpen(manager, name.constData(), 0, 200, &session), status);
    QCOMPARE(session != null_object, status == success);
    if (status == success)
        QCOMPARE(query(session, "*IDN?"), identity);
}

void test_sim_visa::read_hands_out_the_reply_in_pieces()
{
    const ViSession session = opened(usb);
    write(session, "*IDN?");
    QCOMPARE(read(session, 4), std::make_pair(success_max_count, identity.left(4)));
    QCOMPARE(read(session, 17), std::make_pair(success_max_count, identity.mid(4, 17)));
    QCOMPARE(read(session, 1), std::make_pair(success, QByteArray("\n")));
    write(session, "UPREADY?");
    QCOMPARE(read(session, 2), std::make_pair(success, QByteArray("1\n")));
}

void test_sim_visa::term_char_and_end_follow_the_attributes()
{
    const ViSession session = opened(usb);
    QCOMPARE(viSetAttribute(session, attribute_term_char, ','), success);
    QCOMPARE(viSetAttribute(session, attribute_term_char_enable, 1), success);
    write(session, "*IDN?");
    QCOMPARE(read(session), std::make_pair(success_term_char, QByteArray("TMX,")));
    QCOMPARE(viClear(session), success);

    QCOMPARE(viSetAttribute(session, attribute_send_end_enable, 0), success);
    write(session, "ADD:RO");
    write(session, "UTe A1;:ROUTes?\n");
    QCOMPARE(viSetAttribute(session, attribute_term_char_enable, 0), success);
    QCOMPARE(read(session).second, QByteArray("1,0,0,0\n"));
}

void test_sim_visa::unread_reply_stays_until_interrupted_or_cleared()
{
    const ViSession session = opened(usb);
    const ViSession other = opened(lan);
    write(session, "*IDN?");
    QCOMPARE(query(other, "ROUTes?"), QByteArray("0,0,0,0\n"));
    QCOMPARE(read(session).second, identity);

    write(session, "*IDN?");
    QCOMPARE(query(session, "SYST:ERR?"), QByteArray("-410,\"Query INTERRUPTED\"\n"));
    write(session, "*IDN?");
    QCOMPARE(viClear(session), success);
    QCOMPARE(read(session), std::make_pair(error_timeout, QByteArray()));
    QCOMPARE(query(session, "SYST:ERR?"), QByteArray("-420,\"Query UNTERMINATED\"\n"));
    QCOMPARE(query(session, "SYST:ERR?"), QByteArray("0,\"No error\"\n"));
}

void test_sim_visa::read_ends_at_the_time_out_data()
{
    QTest::addColumn<QByteArray>("resource");
    QTest::addColumn<unsigned>("timeout_ms");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("least_ms");
    QTest::newRow("immediate") << QByteArray(slow) << timeout_immediate << error_timeout << 0;
    QTest::newRow("before the reply") << QByteArray(slow) << 50U << error_timeout << 50;
    QTest::newRow("after the reply") << QByteArray(slow) << 5000U << success << 145;
    QTest::newRow("infinite") << QByteArray(slow) << timeout_infinite << success << 145;
    QTest::newRow("reply is there") << QByteArray(usb) << timeout_immediate << success << 0;
}

void test_sim_visa::read_ends_at_the_time_out()
{
    QFETCH(QByteArray, resource);
    QFETCH(unsigned, timeout_ms);
    QFETCH(int, least_ms);
    const ViSession session = opened(resource.constData());
    viSetAttribute(session, attribute_timeout, timeout_ms);
    QElapsedTimer timer;
    write(session, "*OPC?");
    timer.start();
    const auto [status, reply] = read(session);
    QTEST(status, "status");
    QVERIFY(timer.elapsed() >= least_ms);
    viSetAttribute(session, attribute_timeout, timeout_infinite);
    QCOMPARE(status == success ? reply : read(session).second, QByteArray("1\n"));
}

void test_sim_visa::waiting_session_does_not_block_another()
{
    const ViSession waiting = opened(lan);
    viSetAttribute(waiting, attribute_timeout, timeout_infinite);
    auto reading = std::async(std::launch::async, [waiting] { return read(waiting); });
    const ViSession session = opened(usb);
    for (int round = 0; round < 100; ++round)
        QCOMPARE(query(session, "*IDN?"), identity);
    QCOMPARE(viClose(waiting), success);
    QCOMPARE(reading.get().first, error_invalid_object);
}

void test_sim_visa::attributes_have_their_own_size()
{
    const ViSession session = opened(usb);
    ViUInt32 value = 0xDDDDDDDD;
    QCOMPARE(viGetAttribute(session, attribute_timeout, &value), success);
    QCOMPARE(value, 60U);
    value = 0xDDDDDDDD;
    QCOMPARE(viGetAttribute(session, attribute_term_char, &value), success);
    QCOMPARE(value, 0xDDDDDD0AU);
    QCOMPARE(viGetAttribute(session, attribute_send_end_enable, &value), success);
    QCOMPARE(value, 0xDDDD0001U);
    char text[find_buffer_bytes] = "";
    QCOMPARE(viGetAttribute(session, attribute_resource_name, text), success);
    QCOMPARE(text, usb);
    QCOMPARE(viGetAttribute(session, attribute_tcpip_address, text), error_attribute_not_supported);
    QCOMPARE(viSetAttribute(session, attribute_resource_name, 0), error_attribute_read_only);
    QCOMPARE(viSetAttribute(session, attribute_term_char_enable, 2),
             error_attribute_state_not_supported);
    QCOMPARE(viSetAttribute(session, 0x3FFF9999, 0), error_attribute_not_supported);
    QCOMPARE(viGetAttribute(manager, attribute_resource_class, text), success);
    QCOMPARE(QByteArray(text), QByteArray("RSRC_MANAGER"));
}

void test_sim_visa::bad_arguments_give_a_status()
{
    const ViSession session = opened(usb);
    ViSession other = null_object;
    char name[find_buffer_bytes] = "";
    ViUInt8 byte = 0;
    QCOMPARE(viOpenDefaultRM(nullptr), error_user_buffer);
    QCOMPARE(viFindRsrc(manager, nullptr, nullptr, nullptr, name), error_invalid_expression);
    QCOMPARE(viFindRsrc(manager, "?*", nullptr, nullptr, nullptr), error_user_buffer);
    QCOMPARE(viFindRsrc(session, "?*", nullptr, nullptr, name), error_invalid_object);
    QCOMPARE(viFindNext(session, name), error_invalid_object);
    QCOMPARE(viOpen(manager, nullptr, 0, 0, &other), error_invalid_resource_name);
    QCOMPARE(viOpen(manager, usb, 0, 0, nullptr), error_user_buffer);
    QCOMPARE(viOpen(manager, usb, 99, 0, &other), error_invalid_access_mode);
    QCOMPARE(viOpen(12345, usb, 0, 0, &other), error_invalid_object);
    QCOMPARE(viWrite(session, nullptr, 1, nullptr), error_user_buffer);
    QCOMPARE(viRead(session, nullptr, 1, nullptr), error_user_buffer);
    QCOMPARE(viRead(12345, &byte, 1, nullptr), error_invalid_object);
    QCOMPARE(viWrite(manager, &byte, 1, nullptr), error_operation_not_supported);
    QCOMPARE(viClear(manager), error_operation_not_supported);
    QCOMPARE(viGetAttribute(session, attribute_timeout, nullptr), error_user_buffer);
    QCOMPARE(viClose(null_object), warning_null_object);
    QCOMPARE(viClose(12345), error_invalid_object);
    QCOMPARE(query(session, "SYST:ERR?"), QByteArray("0,\"No error\"\n"));
}

void test_sim_visa::closing_the_manager_closes_everything()
{
    ViSession own_manager = null_object;
    ViSession session = null_object;
    ViFindList list = null_object;
    char name[find_buffer_bytes] = "";
    QCOMPARE(viOpenDefaultRM(&own_manager), success);
    QCOMPARE(viOpen(own_manager, usb, 0, 200, &session), success);
    QCOMPARE(viFindRsrc(own_manager, "?*", &list, nullptr, name), success);
    const ViSession survivor = opened(usb);
    QCOMPARE(viClose(own_manager), success);
    QCOMPARE(write(session, "*IDN?"), error_invalid_object);
    QCOMPARE(viFindNext(list, name), error_invalid_object);
    QCOMPARE(viClose(own_manager), error_invalid_object);
    QCOMPARE(query(survivor, "*IDN?"), identity);
}

void test_sim_visa::unplugging_ends_a_waiting_read()
{
    const ViSession session = opened(usb);
    viSetAttribute(session, attribute_timeout, timeout_infinite);
    const auto calls = corvane_sim_call_count(CORVANE_SIM_READ);
    auto reading = std::async(std::launch::async, [session] { return read(session); });
    QTRY_VERIFY(corvane_sim_call_count(CORVANE_SIM_READ) > calls);
    QCOMPARE(corvane_sim_unplug(usb), 0);
    QCOMPARE(reading.get().first, error_connection_lost);
    QCOMPARE(opened(usb), null_object);
    QCOMPARE(query(opened(lan), "*IDN?"), identity);
    QCOMPARE(corvane_sim_plug(usb), 0);
    QCOMPARE(write(session, "*IDN?"), error_connection_lost);
    QCOMPARE(viClear(session), error_connection_lost);
    QCOMPARE(viClose(session), success);
    QCOMPARE(query(opened(usb), "*IDN?"), identity);
}

void test_sim_visa::reboot_kills_all_sessions_and_comes_back()
{
    const ViSession session = opened(usb);
    const ViSession other = opened(lan);
    QCOMPARE(write(session, QByteArray("REBOOT 1\0", 9)), success);
    QCOMPARE(corvane_sim_is_present(usb), 0);
    QCOMPARE(opened(lan), null_object);
    QCOMPARE(read(session).first, error_connection_lost);
    QCOMPARE(write(other, "*IDN?"), error_connection_lost);
    QCOMPARE(viClose(session), success);
    QTRY_COMPARE(corvane_sim_is_present(lan), 1);
    QCOMPARE(query(opened(usb), "ROUTes?"), QByteArray());
    char state[4096] = "";
    QVERIFY(corvane_sim_state(lan, state, sizeof state) < sizeof state);
    QVERIFY(QByteArray(state).contains("\"mode\":\"loader\""));
}

void test_sim_visa::fault_hits_the_call_it_is_meant_for_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("entry");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("reply");
    const auto row = [](const char *name, int kind, int entry, int value, ViStatus status,
                        const QByteArray &reply) {
        QTest::newRow(name) << kind << entry << value << status << reply;
    };
    const QByteArray none;
    row("write status", CORVANE_SIM_FAULT_STATUS, CORVANE_SIM_WRITE, error_system, error_timeout,
        none);
    row("read status", CORVANE_SIM_FAULT_STATUS, CORVANE_SIM_READ, error_system, error_system,
        none);
    row("slow write", CORVANE_SIM_FAULT_DELAY, CORVANE_SIM_WRITE, 5, success, identity);
    row("slow read", CORVANE_SIM_FAULT_DELAY, CORVANE_SIM_READ, 5, success, identity);
    row("lost on write", CORVANE_SIM_FAULT_LOST, CORVANE_SIM_WRITE, 0, error_timeout, none);
    row("lost on read", CORVANE_SIM_FAULT_LOST, CORVANE_SIM_READ, 0, error_timeout, none);
    row("truncated", CORVANE_SIM_FAULT_TRUNCATED, CORVANE_SIM_READ, 3, success, "TMX");
    row("truncated to nothing", CORVANE_SIM_FAULT_TRUNCATED, CORVANE_SIM_WRITE, 0, success, none);
    row("oversized", CORVANE_SIM_FAULT_OVERSIZED, CORVANE_SIM_READ, 400, success_max_count,
        identity.chopped(1) + QByteArray(300 - identity.size() + 1, 'X'));
    row("replaced", CORVANE_SIM_FAULT_REPLACED, CORVANE_SIM_READ, 0, success,
        QByteArray("a\0b", 3));
    row("unplugged", CORVANE_SIM_FAULT_UNPLUG, CORVANE_SIM_READ, 0, error_connection_lost, none);
}

void test_sim_visa::fault_hits_the_call_it_is_meant_for()
{
    QFETCH(int, kind);
    QFETCH(int, entry);
    QFETCH(int, value);
    const ViSession session = opened(usb);
    auto planned = fault(static_cast<corvane_sim_fault_kind_t>(kind),
                         static_cast<corvane_sim_entry_t>(entry), 2, value);
    planned.bytes = "a\0b";
    planned.length = 3;
    QCOMPARE(corvane_sim_add_fault(&planned), 0);
    QCOMPARE(query(session, "*IDN?"), identity);
    write(session, "*IDN?");
    const auto [status, reply] = read(session);
    QTEST(status, "status");
    QTEST(reply, "reply");
    if (kind != CORVANE_SIM_FAULT_UNPLUG)
        QCOMPARE(query(session, "*IDN?"), identity);
}

void test_sim_visa::delayed_read_misses_its_time_out()
{
    const ViSession session = opened(usb);
    const auto planned = fault(CORVANE_SIM_FAULT_DELAY, CORVANE_SIM_READ, 1, 100);
    QCOMPARE(corvane_sim_add_fault(&planned), 0);
    write(session, "*IDN?");
    QCOMPARE(read(session).first, error_timeout);
    viSetAttribute(session, attribute_timeout, 5000);
    QCOMPARE(read(session).second, identity);
}

void test_sim_visa::faulty_call_counts_for_its_resource_only()
{
    const ViSession session = opened(usb);
    const ViSession other = opened(lan);
    auto planned = fault(CORVANE_SIM_FAULT_STATUS, CORVANE_SIM_ANY_ENTRY, 2, error_system);
    planned.resource = "USB::0xa17e::0x2000::s44";
    planned.sticky = 1;
    QCOMPARE(corvane_sim_add_fault(&planned), 0);
    QCOMPARE(query(other, "*IDN?"), identity);
    QCOMPARE(write(session, "*IDN?"), success);
    for (int round = 0; round < 3; ++round)
        QCOMPARE(read(session).first, error_system);
    QCOMPARE(opened(usb), null_object);
    QCOMPARE(query(other, "*IDN?"), identity);
    corvane_sim_clear_faults();
    QCOMPARE(read(session).second, identity);
}

void test_sim_visa::scripted_reply_replaces_the_instrument()
{
    const ViSession session = opened(usb);
    const auto script = [](const char *resource, const QByteArray &reply, int times) {
        return corvane_sim_script_reply(resource, "ROUTes?", 7, reply.constData(),
                                        static_cast<size_t>(reply.size()), times);
    };
    QCOMPARE(script(nullptr, QByteArray("x\0y", 3), -1), 0);
    QCOMPARE(script(usb, "once", 1), 0);
    QCOMPARE(query(session, "ROUTes?"), QByteArray("once"));
    QCOMPARE(query(session, "ROUTes?"), QByteArray("x\0y", 3));
    QCOMPARE(query(session, "ROUTes? "), QByteArray("0,0,0,0\n"));
    QCOMPARE(script(usb, "", 1), 0);
    write(session, "ROUTes?");
    QCOMPARE(read(session), std::make_pair(success, QByteArray()));
    corvane_sim_clear_scripts();
    QCOMPARE(query(session, "ROUTes?"), QByteArray("0,0,0,0\n"));
    QCOMPARE(script("USB0::1::2::3::INSTR", "x", 1), -1);
}

void test_sim_visa::log_holds_the_exact_bytes()
{
    const QByteArray binary("UPGRADE \0;\n\xFF", 12);
    const auto planned = fault(CORVANE_SIM_FAULT_STATUS, CORVANE_SIM_WRITE, 2, error_system);
    QCOMPARE(corvane_sim_add_fault(&planned), 0);
    write(opened(usb), binary);
    write(opened(usb), "never arrives");
    write(opened(lan), "*IDN?");
    QCOMPARE(corvane_sim_log_count(), size_t{2});
    QCOMPARE(log_text(0), binary);
    QCOMPARE(log_text(1), QByteArray("*IDN?"));
    char name[find_buffer_bytes] = "";
    std::int64_t first = 0;
    std::int64_t second = 0;
    corvane_sim_log_entry(0, name, &first, nullptr, 0);
    QCOMPARE(name, usb);
    corvane_sim_log_entry(1, name, &second, nullptr, 0);
    QCOMPARE(name, lan);
    QVERIFY(first > 0 && second >= first);
    QCOMPARE(corvane_sim_log_entry(2, name, nullptr, nullptr, 0), CORVANE_SIM_NONE);
    QCOMPARE(corvane_sim_call_count(CORVANE_SIM_WRITE), std::uint64_t{3});
    QCOMPARE(corvane_sim_call_count(CORVANE_SIM_ANY_ENTRY), std::uint64_t{6});
    corvane_sim_log_clear();
    QCOMPARE(corvane_sim_log_count(), size_t{0});
}

void test_sim_visa::image_reaches_the_test_byte_for_byte()
{
    const ViSession session = opened(usb);
    QCOMPARE(corvane_sim_upgrade_misbehave(usb, 0, 0, 0, 2), 0);
    QByteArray block(2048, '\xFF');
    block.replace(0, 4, QByteArray("\0;\nz", 4));
    write(session, "SYSTem:DEVice:PIDUG \x01;");
    write(session, "BOOTUG 3000");
    write(session, "UPGRADE " + block);
    QCOMPARE(query(session, "UPREADY?"), QByteArray("1\n"));
    QCOMPARE(write(session, "UPGRADE " + block), success);
    QCOMPARE(read(session).first, error_connection_lost);
    QCOMPARE(corvane_sim_is_present(lan), 0);

    QCOMPARE(corvane_sim_image_count(usb), size_t{1});
    QByteArray bytes(2048, '#');
    int kind = 0;
    size_t announced = 0;
    QCOMPARE(corvane_sim_image(lan, 0, &kind, &announced, bytes.data(), 2048), size_t{2048});
    QCOMPARE(bytes, block);
    QCOMPARE(kind, 3);
    QCOMPARE(announced, size_t{3000});
    char name[32] = "";
    char payload[2] = "";
    QCOMPARE(corvane_sim_parameter(usb, 0, name, payload, sizeof payload), size_t{2});
    QCOMPARE(QByteArray(name), QByteArray("PIDUG"));
    QCOMPARE(QByteArray(payload, 2), QByteArray("\x01;"));
}

void test_sim_visa::bad_fleet_leaves_the_old_one()
{
    const ViSession session = opened(usb);
    const char *const same_resource_twice = R"({"instruments": [
        {"identity": "a", "resources": ["TCPIP::1.2.3.4", "TCPIP0::1.2.3.4::inst0::INSTR"]}]})";
    for (const char *json : {"{", same_resource_twice,
                             R"({"instruments": [{"identity": "a", "resources": ["COM1"]}]})"})
        QCOMPARE(corvane_sim_load_fleet(json), -1);
    char reason[200] = "";
    QVERIFY(corvane_sim_last_error(reason, sizeof reason) > 0);
    QVERIFY2(QByteArray(reason).contains("COM1"), reason);
    QCOMPARE(query(session, "*IDN?"), identity);
}

void test_sim_visa::thousand_instruments_are_found_and_opened()
{
    QByteArrayList entries;
    for (int number = 0; number < 1000; ++number)
        entries.append(R"({"product":44,"serial":"N%","resources":["USB::1::2::N%::INSTR"]})");
    for (int number = 0; number < 1000; ++number)
        entries[number].replace('%', QByteArray::number(number));
    const QByteArray json = R"({"instruments":[)" + entries.join(',') + "]}";
    QCOMPARE(corvane_sim_load_fleet(json.constData()), 0);
    ViUInt32 count = 0;
    char name[find_buffer_bytes] = "";
    QCOMPARE(viFindRsrc(manager, "USB?*INSTR", nullptr, &count, name), success);
    QCOMPARE(count, 1000U);
    QCOMPARE(query(opened("USB0::1::2::N999::INSTR"), "SHOW:SER?"), QByteArray("N999\n"));
    corvane_sim_reset();
    QCOMPARE(query(opened(usb), "*IDN?"), identity);
}

void test_sim_visa::threads_use_their_sessions_at_once()
{
    const auto work = [](const char *resource, const char *command, const QByteArray &reply) {
        const ViSession session = opened(resource);
        viSetAttribute(session, attribute_timeout, 5000);
        for (int round = 0; round < 500; ++round)
            if (query(session, command) != reply)
                return false;
        return viClose(session) == success;
    };
    auto one = std::async(std::launch::async, work, usb, "*IDN?", identity);
    auto two = std::async(std::launch::async, work, lan, "ROUTes?", QByteArray("0,0,0,0\n"));
    auto three = std::async(std::launch::async, work, usb, "GET:COLOR? B", QByteArray("BLUE\n"));
    const bool all = one.get() && two.get() && three.get();
    QVERIFY(all);
}

QTEST_APPLESS_MAIN(test_sim_visa)
#include "test_sim_visa.moc"
