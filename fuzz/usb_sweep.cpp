// SPDX-License-Identifier: MIT
// The fault sweep over USB with our VISA library for real instruments: a session of the real
// program with a simulated instrument behind a node of the kernel's usbtmc driver, again and again,
// each time with one call of that driver failing in one way: usb_sweep [--every K] [--kind NAME]
//
// To be run under umockdev-wrapper.

// First, since GLib has names that are keywords of Qt.
#include "tests/support/usbtmc_device.h"

#include "fuzz/visa_io_sweep.h"
#include "tests/support/package_folder.h"
#include "tests/support/recorded_pauses.h"
#include "upgrade/upgrade_protocol.h"

#include <cerrno>
#include <memory>

namespace {

using sim::fault_kind_t;
using sim::operation_t;

/// More than VISA's own time-out, and what the link allows the driver beyond it.
constexpr int too_late_ms = 2500;

const std::vector<io_fault_t> rows{
    {"error", fault_at(operation_t::write, fault_kind_t::status, EIO)},
    {"error", fault_at(operation_t::read, fault_kind_t::status, EIO)},
    {"error", fault_at(operation_t::read, fault_kind_t::status, EPROTO)},
    // Nor can the instrument be cleared then.
    {"uncleared",
     fault_at(operation_t::read, fault_kind_t::status, EIO),
     1,
     {fault_at(operation_t::clear, fault_kind_t::status, ETIMEDOUT)}},
    {"time-out", fault_at(operation_t::write, fault_kind_t::lost), 3},
    {"time-out", fault_at(operation_t::write, fault_kind_t::delay, too_late_ms), 3},
    {"time-out", fault_at(operation_t::read, fault_kind_t::delay, too_late_ms)},
    {"empty", fault_at(operation_t::read, fault_kind_t::truncated)},
    {"oversized", fault_at(operation_t::read, fault_kind_t::oversized, oversized_bytes)},
    {"garbage", fault_at(operation_t::read, fault_kind_t::replaced, 0, garbage)},
    // Each write and each read comes with two of the driver's settings.
    {"unplug", fault_at(operation_t::set_attribute, fault_kind_t::unplug), 7},
    {"unplug", fault_at(operation_t::write, fault_kind_t::unplug)},
    {"unplug", fault_at(operation_t::read, fault_kind_t::unplug)},
};

/// With two ports of a VNA it is asked half as often as with four, for the same.
constexpr int product_id = 24;
const QByteArray host_image = "a host image of one block";
const QByteArray parameter = "TMX";

/// The instrument at its socket, and a user who connects to it, routes, and uses all that USB
/// allows, up to an upgrade with its two reboots.
class usb_bench_t final : public io_bench_t
{
public:
    usb_bench_t() : io_bench_t(product_id, "USB0::0xA17E::0x2000::F1::INSTR")
    {
        // A reboot takes the node away, and the pause in it brings the node back.
        recorded_pauses_t::instance().on_pause([this](unsigned long pause) {
            if (pause == reboot_pause_ms && bus.is_present(0))
                device.plug();
        });
    }

    ~usb_bench_t() override { recorded_pauses_t::instance().reset(); }

    void switch_on() override
    {
        device.unplug();
        renew_instrument();
        device.plug();
    }

    void plug() override
    {
        // Who has left it in its boot loader, where it answers little, has to switch it on again.
        if (bus.access()->instrument_at(0).inspect().mode == sim::instrument_mode_t::loader)
            switch_on();
        else
            device.plug();
    }

    void play(program_user_t &user) override
    {
        user.connect_usb();
        user.click({"A", "3"});
        user.use_dialog(QStringLiteral("Color"), {"Color VNA Port B:=Green"});
        user.use_dialog(QStringLiteral("LAN"), {"Refresh", "Apply"});
        user.use_dialog(QStringLiteral("Scpi"), {"Query"});
        user.upgrade(package);
    }

    bool has_played() override
    {
        const auto access = bus.access();
        const auto &firmware = access->instrument_at(0).inspect().firmware;
        return !firmware.images().empty() && !firmware.parameters().empty() &&
               firmware.images()[0].bytes == host_image.toStdString() &&
               firmware.parameters()[0].bytes == parameter.toStdString();
    }

    bool reconnects(program_user_t &user) override
    {
        user.connect_usb();
        return user.routes() && user.driver().link_text() == QLatin1String("(USB)");
    }

private:
    const package_folder_t folder;
    const QString package = folder.write(
        QStringLiteral("固件.ADS"), make_package(product_id, {{1, host_image}, {5, parameter}}));
    const std::unique_ptr<UMockdevTestbed, decltype(&g_object_unref)> testbed{
        umockdev_testbed_new(), g_object_unref};
    usbtmc_device_t device{*testbed, bus, 0, {"usbtmc0", "a17e", "2000", "F1"}};
};

int sweep(const fault_choice_t &choice)
{
    usb_bench_t bench;
    return sweep_visa_io(bench, rows, choice);
}

} // namespace

int main(int argc, char **argv)
{
    return run_sweep(argc, argv, sweep);
}
