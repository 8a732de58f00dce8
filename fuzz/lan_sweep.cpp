// SPDX-License-Identifier: MIT
// The fault sweep over LAN with our VISA library for real instruments: a session of the real
// program with a simulated instrument on the network, again and again, each time with one exchange
// of the instrument failing in one way: lan_sweep [--every K] [--kind NAME]
//
// To be run in a network namespace, where it takes port 111, and without the C library's pauses.

#include "fuzz/sweep_report.h"
#include "sim/bus/bus.h"
#include "sim/lan/lan_server.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/window_driver.h"

#include <QElapsedTimer>
#include <QtTest/QTest>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <sys/eventfd.h>
#include <unistd.h>

namespace {

using sim::fault_kind_t;
using sim::operation_t;

const char *const address = "127.0.0.1";
/// What one exchange may take, which is VISA's own time-out, and what a dead peer may add to it.
constexpr qint64 wait_ms = 2000;
constexpr qint64 late_ms = 1000;
/// A link that is lost is made anew in the middle of an exchange, which can wait once more.
constexpr int most_waits = 2;
/// The machine may be busy with other things too.
constexpr qint64 slack = 4;

struct row_t
{
    const char *kind;
    operation_t operation;
    fault_kind_t fault;
    std::int64_t value;
    std::string bytes;
};

const std::vector<row_t> rows{
    {"error", operation_t::open, fault_kind_t::status, -1, {}},
    {"error", operation_t::write, fault_kind_t::status, -1, {}},
    {"error", operation_t::read, fault_kind_t::status, -1, {}},
    {"time-out", operation_t::write, fault_kind_t::lost, 0, {}},
    {"time-out", operation_t::write, fault_kind_t::delay, wait_ms + 500, {}},
    {"empty", operation_t::read, fault_kind_t::truncated, 0, {}},
    {"oversized", operation_t::read, fault_kind_t::oversized, 100'000, {}},
    {"garbage", operation_t::read, fault_kind_t::replaced, 0,
     "\xff\xfe\x80,%n,\x01\x1b[2J,;\"'\r\n"},
    {"unplug", operation_t::open, fault_kind_t::unplug, 0, {}},
    {"unplug", operation_t::write, fault_kind_t::unplug, 0, {}},
    {"unplug", operation_t::read, fault_kind_t::unplug, 0, {}},
};

const char *name_of(operation_t operation)
{
    if (operation == operation_t::open)
        return "link";
    return operation == operation_t::write ? "write" : "read";
}

/// The instrument on the network, served until the end.
class network_t
{
public:
    network_t()
    {
        switch_on();
        server.add(0, address);
    }

    ~network_t()
    {
        const std::uint64_t end = 1;
        if (::write(stop, &end, sizeof end) == sizeof end)
            thread.join();
        ::close(stop);
    }

    void switch_on()
    {
        sim::fleet_t fleet;
        fleet.instruments = {sim::default_fleet().instruments[0]};
        fleet.instruments[0].resources = {std::string("TCPIP0::") + address + "::INSTR"};
        bus.load(fleet);
        bus.access()->log.enabled = false;
    }

    sim::bus_t bus;

private:
    int stop = ::eventfd(0, 0);
    sim::lan::lan_server_t server{bus};
    std::thread thread{[this] { server.serve(stop); }};
};

/// A user who connects over LAN, routes, and uses what LAN allows.
class lan_player_t
{
public:
    void open_window()
    {
        driver.reset();
        driver = std::make_unique<window_driver_t>();
    }

    void play()
    {
        connect();
        for (const char *const button : {"A", "3", "A", "B", "2", "Reset"})
            driver->click(QString::fromLatin1(button));
        use("Color", {"Color VNA Port B:=Green"});
        use("Scpi", {"Write", "Read", "Query"});
    }

    bool reconnects()
    {
        connect();
        driver->click(QStringLiteral("A"));
        driver->click(QStringLiteral("3"));
        return driver->link_text() == QLatin1String("(LAN)") &&
               driver->lit_ports().contains(QStringLiteral("3"));
    }

private:
    void connect()
    {
        // Without a window manager a message that was closed leaves the keyboard to nobody.
        driver->window.activateWindow();
        if (QTest::qWaitForWindowActive(&driver->window))
            driver->connect_lan(QLatin1String(address));
    }

    void use(const char *entry, const QStringList &steps)
    {
        if (driver->link_text() != QLatin1String("(LAN)"))
            return;
        use_dialog([&] { driver->choose(QStringLiteral("Tool"), QLatin1String(entry)); },
                   [&](const QDialog &dialog) {
                       for (const QString &step : steps)
                           perform(dialog, step);
                   });
    }

    std::unique_ptr<window_driver_t> driver;
};

class lan_sweep_t
{
public:
    /// Plays the session without a fault; false when it does not do what it should.
    bool prepare();
    void try_each(fault_choice_t choice);
    const sweep_report_t &outcome() const { return report; }

private:
    qint64 play_ms();
    void try_fault(const row_t &row, std::uint32_t nth);
    std::uint64_t calls(operation_t operation)
    {
        return network.bus.access()->faults.call_count(operation);
    }

    network_t network;
    lan_player_t player;
    sweep_report_t report;
    qint64 longest_ms = 0;
};

qint64 lan_sweep_t::play_ms()
{
    QElapsedTimer timer;
    timer.start();
    player.play();
    return timer.elapsed();
}

bool lan_sweep_t::prepare()
{
    report.begin(QStringLiteral("without a fault"));
    player.open_window();
    play_ms();
    longest_ms = slack * play_ms() + most_waits * (wait_ms + late_ms);
    return player.reconnects();
}

void lan_sweep_t::try_fault(const row_t &row, std::uint32_t nth)
{
    const QString what = QStringLiteral("%1 at %2 %3")
                             .arg(QLatin1String(row.kind), QLatin1String(name_of(row.operation)))
                             .arg(nth);
    report.begin(what);
    player.open_window();
    network.bus.access()->faults.add(
        {row.fault, row.operation, nth, std::nullopt, false, row.value, row.bytes});
    const qint64 session_ms = play_ms();
    network.switch_on();
    QString failure;
    if (session_ms > longest_ms)
        failure = QStringLiteral("took %1 ms of at most %2").arg(session_ms).arg(longest_ms);
    else if (!player.reconnects())
        failure = QStringLiteral("cannot reconnect");
    report.end(QLatin1String(row.kind), what, failure, session_ms);
}

void lan_sweep_t::try_each(fault_choice_t choice)
{
    for (const row_t &row : rows) {
        const std::uint64_t before = calls(row.operation);
        player.open_window();
        player.play();
        const std::uint64_t in_session = calls(row.operation) - before;
        for (std::uint32_t nth = 1; nth <= in_session; ++nth)
            if (choice.takes(QLatin1String(row.kind)))
                try_fault(row, nth);
    }
}

int sweep(const fault_choice_t &choice)
{
    lan_sweep_t sweep;
    if (!sweep.prepare()) {
        std::printf("FAILED: the session fails without a fault\n");
        return 1;
    }
    sweep.try_each(choice);
    return sweep.outcome().print() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    return run_sweep(argc, argv, sweep);
}
