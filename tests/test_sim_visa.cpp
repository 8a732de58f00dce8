// SPDX-License-Identifier: MIT
#include "sim/visa/sim_control.h"
#include "visa/entry_points.h"

#include <QtTest/QTest>

#include <QSet>

#include <future>
#include <utility>

namespace {

using namespace visa;

const char *const usb = "USB0::0xA17E::0x2000::S44::INSTR";
const char *const lan = "TCPIP0::127.0.0.1::INSTR";

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

ViStatus lock(ViSession session, ViAccessMode kind, unsigned timeout_ms = timeout_immediate,
              const char *key = nullptr, char *given_key = nullptr)
{
    return viLock(session, kind, timeout_ms, key, given_key);
}

// Whether all operations that talk with the instrument end so.
bool all_end(ViSession session, ViStatus status)
{
    ViUInt16 byte = 0;
    return QSet<ViStatus>{write(session, "*CLS"), read(session).first, viClear(session),
                          viReadSTB(session, &byte),
                          viAssertTrigger(session, trigger_protocol_default)} ==
           QSet<ViStatus>{status};
}

ViUInt32 lock_state(ViSession session)
{
    ViUInt32 state = 77;
    viGetAttribute(session, attribute_lock_state, &state);
    return state;
}

} // namespace

class test_sim_visa : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void search_matches_as_visa_defines();
    void threads_use_their_sessions_at_once();
    void exclusive_lock_bars_the_other_sessions();
    void shared_lock_is_for_those_with_its_key();
};

void test_sim_visa::init()
{
    corvane_sim_reset();
    corvane_sim_load_fleet(fleet);
    if (manager == null_object)
        QCOMPARE(viOpenDefaultRM(&manager), success);
}

void test_sim_visa::search_matches_as_visa_defines()
{
    const std::pair<unsigned, const char *> rows[] = {
        {4, "?*{VI_ATTR_INTF_NUM<2}"},
        {3, "usb[0-9]*::?*instr"},
        {3, "(USB|TCPIP)0::?*"},
        {2, "?*::S(44|2[0-9])::INSTR"},
        {2, "USB[0{]::?*"},
        {2, "USB?*{VI_ATTR_MANF_ID == 0xA17E}"},
        {2, "?*{VI_ATTR_INTF_TYPE != 7 || VI_ATTR_INTF_NUM >= 1}"},
        {1, "USB[^0]+::?*"},
        {1, "?*127\\.0?*"},
        {1, "?* {!(VI_ATTR_MANF_ID > 0)} "},
        {1, "?*{VI_ATTR_MODEL_NAME==\"tmx?*\"&&VI_ATTR_USB_SERIAL_NUM!=\"S44\"}"},
        {1, "?*{VI_ATTR_INTF_TYPE <= 6 || VI_ATTR_INTF_NUM == 1 && VI_ATTR_MANF_ID == 2}"},
        {0, "USB0"},
        {0, "USB\\?*INSTR"},
        {0, "(?*)*(?*)*(?*)*#"},
        {0, "USB1?*{VI_ATTR_MANF_ID == 41342}"},
        {0, "?*{VI_ATTR_TCPIP_ADDR != \"127?*\"}"},
        {0, "?*{!!!(!(VI_ATTR_INTF_NUM > 1))}"}};
    char name[find_buffer_bytes] = "";
    for (const auto &[count, expression] : rows) {
        ViUInt32 found = 77;
        const ViStatus status = viFindRsrc(manager, expression, nullptr, &found, name);
        QVERIFY2(status == (count > 0 ? success : error_resource_not_found), expression);
        QVERIFY2(found == count, expression);
    }
    QByteArrayList bad =
        QByteArray("|*|USB[|USB[]|USB(|USB)|USB[9-0]|USB\\|USB**|?*{|?*}").split('|');
    bad << "a||b"
        << "{VI_ATTR_INTF_NUM == 0}";
    for (const char *clause :
         {"", "VI_ATTR_NO_SUCH == 1", "VI_ATTR_TMO_VALUE == 1", "VI_ATTR_INTF_NUM", "1 == 1",
          "VI_ATTR_INTF_NUM = 1", "VI_ATTR_INTF_NUM == x", "VI_ATTR_INTF_NUM == 0x",
          "VI_ATTR_INTF_NUM == \"0\"", "VI_ATTR_INTF_NUM == 18446744073709551616",
          "VI_ATTR_RSRC_NAME == USB", "VI_ATTR_RSRC_NAME < \"USB\"", "VI_ATTR_RSRC_NAME == \"USB",
          "VI_ATTR_RSRC_NAME == \"*\"", "(VI_ATTR_INTF_NUM == 0", "VI_ATTR_INTF_NUM == 0)",
          "VI_ATTR_INTF_NUM == 0 &&", "VI_ATTR_INTF_NUM == 0} x{"})
        bad.append(QByteArray("?*{") + clause + "}");
    for (const char nested : {'!', '('})
        bad.append("?*{" + QByteArray(1'000'000, nested));
    for (const QByteArray &expression : bad) {
        const ViStatus status = viFindRsrc(manager, expression, nullptr, nullptr, name);
        QVERIFY2(status == error_invalid_expression, expression.left(100));
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

void test_sim_visa::exclusive_lock_bars_the_other_sessions()
{
    const ViSession one = opened(usb);
    const ViSession other = opened(usb);
    ViSession third = null_object;
    QCOMPARE(lock(one, access_exclusive_lock), success);
    QCOMPARE(lock(one, access_exclusive_lock), success_nested_exclusive);
    QVERIFY(all_end(other, error_resource_locked));
    QCOMPARE(lock_state(other), access_exclusive_lock);
    QCOMPARE(query(opened(lan), "*IDN?"), identity);
    QCOMPARE(viOpen(manager, usb, access_exclusive_lock, 20, &third), error_timeout);
    QCOMPARE(lock(other, access_exclusive_lock), error_resource_locked);
    QCOMPARE(lock(one, access_shared_lock, timeout_infinite, "key"), error_resource_locked);
    QCOMPARE(viUnlock(one), success_nested_exclusive);
    QCOMPARE(write(other, "*CLS"), error_resource_locked);

    // Who waits gets the lock when its owner goes, but not when the instrument does.
    for (const ViStatus end : {success, error_connection_lost}) {
        const ViSession next = end == success ? other : opened(usb);
        const auto calls = corvane_sim_call_count(CORVANE_SIM_LOCK);
        auto waiting = std::async(std::launch::async, lock, next, access_exclusive_lock,
                                  timeout_infinite, nullptr, nullptr);
        QTRY_VERIFY(corvane_sim_call_count(CORVANE_SIM_LOCK) > calls);
        if (end == success)
            viClose(one);
        else
            corvane_sim_unplug(usb);
        QCOMPARE(waiting.get(), end);
    }
    corvane_sim_plug(usb);
    QCOMPARE(query(opened(usb), "*IDN?"), identity);
}

void test_sim_visa::shared_lock_is_for_those_with_its_key()
{
    const ViSession one = opened(usb);
    const ViSession other = opened(usb);
    const ViSession stranger = opened(usb);
    char key[find_buffer_bytes] = "";
    QCOMPARE(lock(one, access_shared_lock, 0, nullptr, key), success);
    QCOMPARE(lock(one, access_shared_lock, 0, "wrong"), error_invalid_access_key);
    QCOMPARE(lock(one, 4), error_invalid_lock_type);
    QCOMPARE(lock(one, access_shared_lock, 0, key), success_nested_shared);
    QCOMPARE(lock(stranger, access_shared_lock, 0, "wrong"), error_resource_locked);
    QVERIFY(all_end(stranger, error_resource_locked));
    QCOMPARE(lock(other, access_shared_lock, 0, key), success);
    QCOMPARE(lock_state(stranger), access_shared_lock);
    QCOMPARE(lock(other, access_exclusive_lock), success);
    QCOMPARE(write(one, "*CLS"), error_resource_locked);
    QCOMPARE(viUnlock(other), success_nested_shared);
    QCOMPARE(write(one, "*CLS"), success);
    QCOMPARE(viUnlock(other), success);
    QCOMPARE(write(other, "*CLS"), error_resource_locked);
    QCOMPARE(viUnlock(one), success_nested_shared);
    QCOMPARE(viUnlock(one), success);
    QCOMPARE(lock_state(stranger), access_no_lock);
    QCOMPARE(lock(one, access_shared_lock), success);
    QCOMPARE(viClose(one), success);
    QCOMPARE(lock_state(stranger), access_no_lock);
}

QTEST_APPLESS_MAIN(test_sim_visa)
#include "test_sim_visa.moc"
