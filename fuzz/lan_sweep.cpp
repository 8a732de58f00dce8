// SPDX-License-Identifier: MIT
// The fault sweep over LAN with our VISA library for real instruments: a session of the real
// program with a simulated instrument on the network, again and again, each time with one exchange
// of the instrument failing in one way: lan_sweep [--every K] [--kind NAME]
//
// To be run in a network namespace, where it takes port 111.

#include "fuzz/visa_io_sweep.h"
#include "sim/lan/lan_server.h"

#include <string>
#include <thread>

#include <sys/eventfd.h>
#include <unistd.h>

namespace {

using sim::fault_kind_t;
using sim::operation_t;

const char *const address = "127.0.0.1";
/// More than VISA's own time-out.
constexpr int too_late_ms = 2500;

const std::vector<io_fault_t> rows{
    {"error", fault_at(operation_t::open, fault_kind_t::status, -1)},
    {"error", fault_at(operation_t::write, fault_kind_t::status, -1)},
    {"error", fault_at(operation_t::read, fault_kind_t::status, -1)},
    {"time-out", fault_at(operation_t::write, fault_kind_t::lost)},
    {"time-out", fault_at(operation_t::write, fault_kind_t::delay, too_late_ms)},
    {"empty", fault_at(operation_t::read, fault_kind_t::truncated)},
    {"oversized", fault_at(operation_t::read, fault_kind_t::oversized, oversized_bytes)},
    {"garbage", fault_at(operation_t::read, fault_kind_t::replaced, 0, garbage)},
    {"unplug", fault_at(operation_t::open, fault_kind_t::unplug)},
    {"unplug", fault_at(operation_t::write, fault_kind_t::unplug)},
    {"unplug", fault_at(operation_t::read, fault_kind_t::unplug)},
};

/// The instrument on the network, served until the end, and a user who connects to it, routes, and
/// uses what LAN allows.
class lan_bench_t final : public io_bench_t
{
public:
    lan_bench_t() : io_bench_t(44, std::string("TCPIP0::") + address + "::INSTR")
    {
        server.add(0, address);
    }

    ~lan_bench_t() override
    {
        const std::uint64_t end = 1;
        if (::write(stop, &end, sizeof end) == sizeof end)
            thread.join();
        ::close(stop);
    }

    void switch_on() override { renew_instrument(); }
    void plug() override { bus.access()->plug(0); }

    void play(program_user_t &user) override
    {
        user.connect_lan();
        user.use_panel();
        user.use_dialog(QStringLiteral("Color"), {"Color VNA Port B:=Green"});
        user.use_dialog(QStringLiteral("Scpi"), {"Write", "Read", "Query"});
    }

    bool has_played() override
    {
        return bus.access()->instrument_at(0).inspect().colors.color("B") == "GREEN";
    }

    bool reconnects(program_user_t &user) override
    {
        user.connect_lan();
        return user.routes() && user.driver().link_text() == QLatin1String("(LAN)");
    }

private:
    int stop = ::eventfd(0, 0);
    sim::lan::lan_server_t server{bus};
    std::thread thread{[this] { server.serve(stop); }};
};

int sweep(const fault_choice_t &choice)
{
    lan_bench_t bench;
    return sweep_visa_io(bench, rows, choice);
}

} // namespace

int main(int argc, char **argv)
{
    return run_sweep(argc, argv, sweep);
}
