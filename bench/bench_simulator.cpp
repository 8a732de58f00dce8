// SPDX-License-Identifier: MIT
// How many queries a second the simulated instruments answer through the VISA interface, beside the
// same instrument asked without it; and a thousand of them in one process beside a single one.

#include "bench/figures.h"
#include "sim/instrument/sim_instrument.h"
#include "sim/visa/sim_control.h"
#include "visa/entry_points.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string_view>

namespace {

using steady_clock_t = std::chrono::steady_clock;

constexpr int runs = 7;
constexpr int queries = 100'000;
constexpr int many_instruments = 1000;
constexpr std::string_view question = "ROUTes?";

std::string resource_name(int number)
{
    return "USB0::0xA17E::0x2000::SN" + std::to_string(number) + "::INSTR";
}

std::string fleet_text(int instruments)
{
    std::string text;
    for (int number = 0; number < instruments; ++number)
        text += std::string(number == 0 ? "" : ",") + R"({"product": 44, "serial": "SN)" +
                std::to_string(number) + R"(", "resources": [")" + resource_name(number) + R"("]})";
    return R"({"instruments": [)" + text + "]}";
}

void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

/// A fleet with every instrument open.
std::vector<ViSession> open_fleet(ViSession manager, int instruments)
{
    require(corvane_sim_load_fleet(fleet_text(instruments).c_str()) == 0, "the fleet is refused");
    corvane_sim_log_enable(0);
    std::vector<ViSession> sessions(static_cast<std::size_t>(instruments));
    for (int number = 0; number < instruments; ++number)
        require(viOpen(manager, resource_name(number).c_str(), 0, 0,
                       &sessions[static_cast<std::size_t>(number)]) == 0,
                "an instrument does not open");
    return sessions;
}

void query(ViSession session)
{
    std::array<ViUInt8, 300> reply;
    ViUInt32 length = 0;
    viWrite(session, reinterpret_cast<const ViUInt8 *>(question.data()),
            static_cast<ViUInt32>(question.size()), nullptr);
    require(viRead(session, reply.data(), static_cast<ViUInt32>(reply.size()), &length) == 0 &&
                std::string_view(reinterpret_cast<const char *>(reply.data()), length) ==
                    "0,0,0,0\n",
            "a wrong reply");
}

double seconds(const std::function<void()> &action)
{
    const auto start = steady_clock_t::now();
    action();
    return std::chrono::duration<double>(steady_clock_t::now() - start).count();
}

/// Thousands of queries a second, all sessions in turn.
double query_rate(const std::vector<ViSession> &sessions)
{
    return queries / 1e3 / seconds([&sessions] {
               for (std::size_t count = 0; count < queries; ++count)
                   query(sessions[count % sessions.size()]);
           });
}

double direct_rate(sim::sim_instrument_t &instrument)
{
    return queries / 1e3 / seconds([&instrument] {
               for (int count = 0; count < queries; ++count)
                   require(instrument.receive(question).reply == "0,0,0,0\n", "a wrong reply");
           });
}

/// From the beginning of a search to the last name that it gives, in ms.
double search_ms(ViSession manager, ViUInt32 expected)
{
    return 1e3 * seconds([manager, expected] {
               ViFindList list = 0;
               ViUInt32 count = 0;
               std::array<char, 256> name;
               viFindRsrc(manager, "USB?*INSTR", &list, &count, name.data());
               require(count == expected, "a search finds the wrong number");
               while (viFindNext(list, name.data()) == 0)
                   ;
               viClose(list);
           });
}

} // namespace

int main()
{
    ViSession manager = 0;
    require(viOpenDefaultRM(&manager) == 0, "no resource manager");

    const double memory_before = peak_memory_kib();
    open_fleet(manager, many_instruments);
    const double many_kib = peak_memory_kib() - memory_before;

    std::vector<double> direct_rates;
    std::vector<double> single_rates;
    std::vector<double> many_rates;
    std::vector<double> search_times_ms;
    sim::sim_instrument_t direct{sim::instrument_config_t{}};
    // In turn, so that what disturbs the machine disturbs all of them.
    for (int run = 0; run < runs; ++run) {
        direct_rates.push_back(direct_rate(direct));
        single_rates.push_back(query_rate(open_fleet(manager, 1)));
        many_rates.push_back(query_rate(open_fleet(manager, many_instruments)));
        search_times_ms.push_back(search_ms(manager, many_instruments));
    }
    print_figure({"simulator, queries through VISA against without", "1000/s", median(single_rates),
                  median(direct_rates), 0});
    print_figure({"simulator, queries to 1000 instruments against to one", "1000/s",
                  median(many_rates), median(single_rates), 0});
    print_figure(
        {"simulator, search that finds 1000 instruments", "ms", median(search_times_ms), 0, 0});
    print_figure({"simulator, memory of one of 1000 open instruments", "KiB",
                  many_kib / many_instruments, 0, 0});
    return 0;
}
