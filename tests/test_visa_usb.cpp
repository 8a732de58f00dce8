// SPDX-License-Identifier: MIT
// First, since GLib has names that are keywords of Qt.
#include "tests/support/usbtmc_device.h"

#include "sim/bus/bus.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/recorded_pauses.h"
#include "tests/support/window_driver.h"
#include "visa_io/usb/usb_bus.h"

#include <QtTest/QTest>

#include <array>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;
using namespace visa_io;

namespace {

using identity_t = usbtmc_device_t::identity_t;

const identity_t plain{"usbtmc0", "a17e", "2000", "SN44001"};
constexpr auto plain_name = "USB0::0xA17E::0x2000::SN44001::INSTR";

deadline_t in(std::chrono::milliseconds time)
{
    return io_clock_t::now() + time;
}

/// Lets this thread pass file permissions, or not, when it is root's.
void set_privileged(bool is_privileged)
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> sets{};
    ::syscall(SYS_capget, &header, sets.data());
    const __u32 bit = 1U << CAP_DAC_OVERRIDE;
    sets[0].effective = is_privileged ? sets[0].permitted : sets[0].effective & ~bit;
    ::syscall(SYS_capset, &header, sets.data());
}

/// A machine with one TMX5044.
struct machine_t
{
    explicit machine_t(std::chrono::milliseconds delay = 0ms)
    {
        sim::fleet_t fleet = sim::default_fleet();
        fleet.instruments.resize(1);
        fleet.instruments[0].response_delay = delay;
        fleet.reboot_time = 0ms; // the test brings the node back
        bus.load(fleet);
    }
    ~machine_t() { g_object_unref(testbed); }

    /// Everything that the instrument received.
    QByteArrayList texts()
    {
        QByteArrayList all;
        for (const auto &entry : bus.access()->log.entries())
            all.append(QByteArray::fromStdString(entry.bytes));
        return all;
    }

    UMockdevTestbed *testbed = umockdev_testbed_new();
    sim::bus_t bus;
};

/// The instrument, and a session on it.
struct bench_t : machine_t
{
    explicit bench_t(std::chrono::milliseconds delay = 0ms) : machine_t(delay) { open(); }

    ViStatus open()
    {
        link.reset();
        return open_usb_instrument(*visa::read_resource_name(plain_name), in(1s), link, attributes);
    }

    transfer_t ask(const char *query, std::size_t size = 100, int term_char = -1,
                   std::chrono::milliseconds time = 2s)
    {
        link->write(query, true, in(time));
        return read(size, term_char, time);
    }

    transfer_t read(std::size_t size = 100, int term_char = -1, std::chrono::milliseconds time = 2s)
    {
        std::string buffer(size + 1, '#');
        const transfer_t got = link->read(buffer.data(), size, term_char, in(time));
        exceeded = buffer.back() != '#';
        reply = buffer.substr(0, got.count);
        return got;
    }

    void fail_next(sim::operation_t operation, int error)
    {
        bus.access()->faults.add(
            {sim::fault_kind_t::status, operation, 1, std::nullopt, false, error, {}});
    }

    usbtmc_device_t device{*testbed, bus, 0, plain};
    std::unique_ptr<device_link_t> link;
    visa::object_attributes_t attributes;
    std::string reply;
    bool exceeded = false;
};

} // namespace

class test_visa_usb : public QObject
{
    Q_OBJECT

private slots:
    void search_names_what_is_plugged_in_at_the_moment();
    void open_tells_a_missing_node_from_a_forbidden_one();
    void message_arrives_whole();
    void read_takes_no_more_than_asked_for_and_tells_the_end();
    void late_reply_answers_no_later_query();
    void dead_instrument_stretches_no_wait();
    void unplugged_instrument_is_lost_until_opened_again();
    void clear_status_and_trigger_go_beside_the_messages();
    void program_loses_a_rebooting_instrument();
};

void test_visa_usb::search_names_what_is_plugged_in_at_the_moment()
{
    machine_t machine;
    const auto names = [] {
        QStringList all;
        for (const auto &found : find_usb_instruments())
            all += QString::fromStdString(found.name_text);
        return all;
    };
    QCOMPARE(names(), QStringList());
    const std::array<identity_t, 6> plugged{{{"usbtmc10", "a17e", "2000", "SN2"},
                                             {"usbtmc2", "a17e", "2000", "SN1", "0a"},
                                             {"usbtmc3", "a17e", "2000", ""},
                                             {"usbtmc4", "0b", "20af", "with space"},
                                             {"usbtmc5", "a17e", "2000", "A::1"},
                                             {"usbtmc6", "", "2000", "SN3"}}};
    std::vector<std::unique_ptr<usbtmc_device_t>> devices;
    devices.reserve(plugged.size());
    for (const identity_t &identity : plugged)
        devices.push_back(
            std::make_unique<usbtmc_device_t>(*machine.testbed, machine.bus, 0, identity));
    QCOMPARE(names(), QStringList({"USB0::0x000B::0x20AF::with space::INSTR",
                                   "USB0::0xA17E::0x2000::SN1::10::INSTR",
                                   "USB0::0xA17E::0x2000::SN2::INSTR"}));
    QCOMPARE(find_usb_instruments()[0].instrument_maker, std::string("Norvale"));
    QCOMPARE(find_usb_instruments()[0].instrument_model, std::string("TMX"));
    devices.clear();
    QCOMPARE(names(), QStringList());
}

void test_visa_usb::open_tells_a_missing_node_from_a_forbidden_one()
{
    bench_t bench;
    std::unique_ptr<device_link_t> second;
    visa::object_attributes_t attributes;
    const auto open = [&](const char *name) {
        return open_usb_instrument(*visa::read_resource_name(name), in(1s), second, attributes);
    };
    QCOMPARE(open("usb::41342::8192::sn44001::0"), visa::success);
    QCOMPARE(attributes.name_text, std::string(plain_name));
    QCOMPARE(second->write("*IDN?", true, in(1s)).status, visa::success);
    bench.read();
    QVERIFY(bench.reply.find("SN44001") != std::string::npos);
    QCOMPARE(open("USB0::0xA17E::0x2000::SN44001::1::INSTR"), visa::error_resource_not_found);
    QCOMPARE(open("USB0::0xA17E::0x2000::SN44002::INSTR"), visa::error_resource_not_found);

    QCOMPARE(::chmod(bench.device.node_file().c_str(), 0), 0);
    set_privileged(false);
    const ViStatus status = open(plain_name);
    set_privileged(true);
    QCOMPARE(status, visa::error_no_permission);
    QCOMPARE(find_usb_instruments().size(), std::size_t(1));
}

void test_visa_usb::message_arrives_whole()
{
    bench_t bench;
    std::string image(2056, '\0');
    const auto received = [&bench] {
        std::string all = bench.texts().join().toStdString();
        bench.bus.access()->log.clear();
        return all;
    };
    for (const std::size_t size : {std::size_t(7), image.size(), std::size_t(9000)}) {
        image.assign(size, '\0');
        image.front() = 'R';
        bench.device.writes = 0;
        const transfer_t sent = bench.link->write(image, true, in(2s));
        QCOMPARE(sent.status, visa::success);
        QCOMPARE(sent.count, size);
        QCOMPARE(bench.device.writes, size > 4000 ? 3 : 1);
        QVERIFY(received() == image);
    }
    // In two pieces, of the caller's making and of the link's.
    bench.link->write("*ID", false, in(1s));
    for (const std::string &rest : {std::string("N?"), std::string(4078, ' ') + "*IDN?"}) {
        bench.ask(rest.c_str());
        QVERIFY(bench.reply.find("SN44001") != std::string::npos);
    }
}

void test_visa_usb::read_takes_no_more_than_asked_for_and_tells_the_end()
{
    bench_t bench;
    bench.ask("*IDN?");
    const std::string whole = bench.reply;
    for (const bool is_able : {true, false}) {
        bench.device.refuses_term_char = !is_able;
        QVERIFY(bench.ask("*IDN?", whole.size()).end);
        QVERIFY(!bench.ask("*IDN?", 5).end);
        QCOMPARE(bench.reply, whole.substr(0, 5));
        QVERIFY(!bench.exceeded);
        QVERIFY(bench.read().end);
        QCOMPARE(bench.reply, whole.substr(5));
        const transfer_t field = bench.ask("*IDN?", 100, ',');
        QVERIFY(field.status == visa::success && !field.end);
        QCOMPARE(bench.reply, whole.substr(0, whole.find(',') + 1));
        QVERIFY(bench.read().end);
        QCOMPARE(bench.reply, whole.substr(whole.find(',') + 1));
    }
}

void test_visa_usb::late_reply_answers_no_later_query()
{
    bench_t bench(300ms);
    QCOMPARE(bench.ask("*IDN?", 100, -1, 20ms).status, visa::error_timeout);
    QTRY_COMPARE(bench.device.clears, 1);
    QCOMPARE(bench.ask("SYST:ERR?").status, visa::success);
    // Not "-410": the instrument was cleared before it was asked again.
    QCOMPARE(QByteArray::fromStdString(bench.reply).left(2), QByteArray("0,"));
    // Nor does what another program has left behind.
    bench.device.is_out_of_turn = true;
    QCOMPARE(bench.ask("*IDN?").status, visa::error_io);
    QCOMPARE(bench.ask("*STB?").status, visa::success);
    QCOMPARE(bench.device.clears, 2);
    // Closing waits until it is cleared.
    QCOMPARE(bench.ask("*IDN?", 100, -1, 20ms).status, visa::error_timeout);
    bench.link.reset();
    QCOMPARE(bench.device.clears, 3);
    // Also when the first attempt failed.
    bench.open();
    bench.fail_next(sim::operation_t::clear, EIO);
    bench.device.is_out_of_turn = true;
    QCOMPARE(bench.ask("*IDN?").status, visa::error_io);
    QTRY_COMPARE(bench.bus.access()->faults.call_count(sim::operation_t::clear), 4U);
    bench.link.reset();
    QCOMPARE(bench.device.clears, 5);
    // Or before the next message.
    bench.open();
    bench.fail_next(sim::operation_t::clear, EIO);
    bench.fail_next(sim::operation_t::read, EIO);
    QCOMPARE(bench.ask("*IDN?").status, visa::error_io);
    QTRY_COMPARE(bench.bus.access()->faults.call_count(sim::operation_t::clear), 6U);
    QCOMPARE(bench.ask("*STB?").status, visa::success);
}

void test_visa_usb::dead_instrument_stretches_no_wait()
{
    bench_t bench;
    bench.device.stalls_for_ms = 700;
    deadline_t start = io_clock_t::now();
    QCOMPARE(bench.link->write("*IDN?", true, in(100ms)).status, visa::error_timeout);
    QCOMPARE(bench.read(100, -1, 100ms).status, visa::error_timeout);
    QVERIFY(io_clock_t::now() - start < 1500ms);
    bench.device.stalls_for_ms = 0;
    QCOMPARE(bench.ask("*STB?").status, visa::success);
    QCOMPARE(bench.device.writes, 1); // what was given up is not sent later
    QCOMPARE(bench.device.clears, 0); // nor was there anything to clear
    bench.device.drips_every_ms = 30;
    start = io_clock_t::now();
    QCOMPARE(bench.read(100, -1, 100ms).status, visa::error_timeout);
    QVERIFY(io_clock_t::now() - start < 1100ms);
    QTRY_COMPARE(bench.device.clears, 1);
}

void test_visa_usb::unplugged_instrument_is_lost_until_opened_again()
{
    bench_t bench(2s);
    bench.link->write("*IDN?", true, in(1s));
    std::thread hand([&bench] {
        while (!bench.device.is_reading)
            std::this_thread::yield();
        bench.device.unplug();
    });
    const deadline_t start = io_clock_t::now();
    const ViStatus status = bench.read(100, -1, 4s).status;
    hand.join();
    QCOMPARE(status, visa::error_connection_lost);
    QVERIFY(io_clock_t::now() - start < 1s);
    std::unique_ptr<device_link_t> old = std::move(bench.link);
    QCOMPARE(bench.open(), visa::error_resource_not_found);
    bench.device.plug();
    QCOMPARE(bench.open(), visa::success);
    QCOMPARE(old->write("*RST", true, in(1s)).status, visa::error_connection_lost);
    old.reset();
    QCOMPARE(bench.ask("*STB?", 100, -1, 8s).status, visa::success);
    bench.fail_next(sim::operation_t::write, EPROTO);
    for (int attempt = 0; attempt < 2; ++attempt)
        QCOMPARE(bench.link->write("*RST", true, in(1s)).status, visa::error_connection_lost);
}

void test_visa_usb::clear_status_and_trigger_go_beside_the_messages()
{
    bench_t bench;
    ViUInt8 status = 0;
    bench.link->write("*IDN?", true, in(1s));
    QCOMPARE(bench.link->read_status_byte(status, in(1s)), visa::success);
    QVERIFY((status & 0x10U) != 0);
    QCOMPARE(bench.link->clear(in(1s)), visa::success);
    QCOMPARE(bench.link->read_status_byte(status, in(1s)), visa::success);
    QVERIFY((status & 0x10U) == 0);
    QCOMPARE(bench.link->trigger(in(1s)), visa::success);
    QCOMPARE(bench.device.triggers, 1);
}

void test_visa_usb::program_loses_a_rebooting_instrument()
{
    machine_t machine;
    usbtmc_device_t device(*machine.testbed, machine.bus, 0, plain);
    window_driver_t driver;
    const auto rescan_and_route = [&] {
        QVERIFY(driver.click("Rescan"));
        QCOMPARE(driver.link_text(), "(USB)");
        QVERIFY(driver.click("Reset") && driver.click("C") && driver.click("8"));
        QCOMPARE(driver.lit_ports(), QStringList({"C", "8"}));
    };
    rescan_and_route();
    QCOMPARE(driver.devices(), QStringList(plain_name));

    machine.bus.access()->log.clear();
    QVERIFY(use_dialog([&] { driver.choose("Tool", "LAN"); },
                       [](const QDialog &dialog) {
                           for (const char *const step :
                                {"IP Setting=Fixed IP", "IP Address:=10.0.0.9", "Hostname:=rack",
                                 "Apply", "IP Address:=10.0.0.1", "Refresh"})
                               QVERIFY(perform(dialog, step));
                           QCOMPARE(shown(dialog, "IP Address:"), "10.0.0.9");
                       }));
    QVERIFY(machine.texts().contains("SET:LAN:IP 10.0.0.9") &&
            machine.texts().contains("SET:LAN:HOST:NAMe rack"));

    // A reboot takes the node away, and the pause in it brings the node back.
    recorded_pauses_t::instance().on_pause([&device](unsigned long pause) {
        if (pause == 500)
            device.plug();
    });
    QVERIFY(use_dialog([&] { QMetaObject::invokeMethod(&driver.window, "product_btn_click_slot"); },
                       [](const QDialog &dialog) {
                           QVERIFY(perform(dialog, "Product Type:=TMX44") &&
                                   perform(dialog, "Set"));
                       }));
    QCOMPARE(machine.texts().last(), QByteArray("REBOOT"));
    QVERIFY(!device.is_there());
    QVERIFY(driver.click("A"));
    device.plug();
    machine.bus.access()->log.clear();
    rescan_and_route();
    recorded_pauses_t::instance().reset();
}

CORVANE_GUI_TEST_MAIN(test_visa_usb)
#include "test_visa_usb.moc"
