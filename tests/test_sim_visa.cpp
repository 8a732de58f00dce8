// SPDX-License-Identifier: MIT
#include "sim/visa/sim_control.h"
#include "sim/visa/visa_exports.h"

#include <QtTest/QTest>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <future>
#include <utility>

namespace {

using namespace visa;

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
    return write(session, text) == success ? read(session).second : QByteArray("not written");
}

struct fault_row_t
{
    const char *name;
    corvane_sim_fault_kind_t kind;
    corvane_sim_entry_t entry;
    std::int64_t value;
    ViStatus status; // of the read, and what it reads
    QByteArray reply;
};

} // namespace

class test_sim_visa : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void search_matches_as_visa_defines();
    void read_hands_out_the_reply_in_pieces();
    void unread_reply_stays_until_interrupted_or_cleared();
    void read_ends_at_the_time_out();
    void wrong_object_or_null_gives_a_status();
    void unplugging_ends_a_waiting_read();
    void fault_hits_the_call_it_is_meant_for();
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

void test_sim_visa::search_matches_as_visa_defines()
{
    static const std::pair<unsigned, QByteArrayList> rows[] = {
        {4, {"?*"}},
        {3, {"USB?*INSTR", "usb?*instr", "USB[0-9]*::?*INSTR", "(USB|TCPIP)0::?*"}},
        {2, {"?*::S(44|2[0-9])::INSTR"}},
        {1, {"USB[^0]::?*", "USB1+::?*", "?*127\\.0?*"}},
        {0, {"USB0", "USB\\?*INSTR", "(?*)*(?*)*(?*)*#"}}};
    char name[find_buffer_bytes] = "";
    for (const auto &[count, expressions] : rows) {
        for (const QByteArray &expression : expressions) {
            ViUInt32 found = 77;
            const ViStatus status = viFindRsrc(manager, expression, nullptr, &found, name);
            QVERIFY2(status == (count > 0 ? success : error_resource_not_found), expression);
            QVERIFY2(found == count, expression);
        }
    }
    for (const char *bad :
         {"", "*", "USB[", "USB[]", "USB(", "USB)", "a||b", "USB[9-0]", "USB\\", "USB**"})
        QVERIFY2(viFindRsrc(manager, bad, nullptr, nullptr, name) == error_invalid_expression, bad);
}

void test_sim_visa::read_hands_out_the_reply_in_pieces()
{
    const ViSession session = opened(usb);
    write(session, "*IDN?");
    QCOMPARE(read(session, 4), std::make_pair(success_max_count, identity.left(4)));
    QCOMPARE(read(session, 17), std::make_pair(success_max_count, identity.mid(4, 17)));
    QCOMPARE(read(session, 1), std::make_pair(success, QByteArray("\n")));
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
}

void test_sim_visa::read_ends_at_the_time_out()
{
    const ViSession session = opened(slow);
    for (const unsigned timeout_ms : {timeout_immediate, 50U, 5000U, timeout_infinite}) {
        const bool in_time = timeout_ms >= 150;
        viSetAttribute(session, attribute_timeout, timeout_ms);
        write(session, "*OPC?");
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(read(session).first, in_time ? success : error_timeout);
        QVERIFY(timer.elapsed() >= (in_time ? 145 : timeout_ms));
        QCOMPARE(viClear(session), success);
    }
}

void test_sim_visa::wrong_object_or_null_gives_a_status()
{
    ViSession own_manager = null_object;
    ViSession session = null_object;
    QCOMPARE(viOpenDefaultRM(&own_manager), success);
    QCOMPARE(viOpen(own_manager, nullptr, 0, 0, &session), error_invalid_resource_name);
    QCOMPARE(viOpen(own_manager, usb, 0, 200, &session), success);
    QCOMPARE(viRead(session, nullptr, 1, nullptr), error_user_buffer);
    const ViSession survivor = opened(usb);
    QCOMPARE(viClose(own_manager), success);
    QCOMPARE(write(session, "*IDN?"), error_invalid_object);
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
    QCOMPARE(corvane_sim_plug(usb), 0);
    QCOMPARE(write(session, "*IDN?"), error_connection_lost);
    QCOMPARE(query(opened(usb), "*IDN?"), identity);
}

void test_sim_visa::fault_hits_the_call_it_is_meant_for()
{
    const auto to_write = CORVANE_SIM_WRITE;
    const auto to_read = CORVANE_SIM_READ;
    const QByteArray oversized = identity.chopped(1) + QByteArray(301 - identity.size(), 'X');
    const fault_row_t rows[] = {
        {"write status", CORVANE_SIM_FAULT_STATUS, to_write, error_system, error_timeout, ""},
        {"read status", CORVANE_SIM_FAULT_STATUS, to_read, error_system, error_system, ""},
        {"slow read", CORVANE_SIM_FAULT_DELAY, to_read, 100, error_timeout, ""},
        {"lost on write", CORVANE_SIM_FAULT_LOST, to_write, 0, error_timeout, ""},
        {"lost on read", CORVANE_SIM_FAULT_LOST, to_read, 0, error_timeout, ""},
        {"truncated", CORVANE_SIM_FAULT_TRUNCATED, to_read, 3, success, "TMX"},
        {"truncated to nothing", CORVANE_SIM_FAULT_TRUNCATED, to_write, 0, success, ""},
        {"oversized", CORVANE_SIM_FAULT_OVERSIZED, to_read, 400, success_max_count, oversized},
        {"replaced", CORVANE_SIM_FAULT_REPLACED, to_read, 0, success, QByteArray("a\0b", 3)}};
    for (const fault_row_t &row : rows) {
        corvane_sim_reset();
        const ViSession session = opened(usb);
        const corvane_sim_fault_t fault{row.kind, row.entry, 2, nullptr, 0, row.value, "a\0b", 3};
        QCOMPARE(corvane_sim_add_fault(&fault), 0);
        QVERIFY2(query(session, "*IDN?") == identity, row.name);
        write(session, "*IDN?");
        QVERIFY2(read(session) == std::make_pair(row.status, row.reply), row.name);
        QVERIFY2(query(session, "*IDN?") == identity, row.name);
    }
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
    const ViSession waiting = opened(lan);
    viSetAttribute(waiting, attribute_timeout, timeout_infinite);
    auto blocked = std::async(std::launch::async, [waiting] { return read(waiting); });
    auto one = std::async(std::launch::async, work, usb, "*IDN?", identity);
    auto two = std::async(std::launch::async, work, lan, "ROUTes?", QByteArray("0,0,0,0\n"));
    const bool both = one.get() && two.get();
    viClose(waiting);
    QCOMPARE(blocked.get().first, error_invalid_object);
    QVERIFY(both);
}

QTEST_APPLESS_MAIN(test_sim_visa)
#include "test_sim_visa.moc"
