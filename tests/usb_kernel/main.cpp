// SPDX-License-Identifier: MIT
#include "sim/usb/plugged_instrument.h"
#include "tests/usb_kernel/checks.h"
#include "tests/usb_kernel/client.h"

#include <algorithm>
#include <exception>
#include <iostream>

namespace {

using namespace usb_kernel;

bool passes(const check_t &check, bench_t &bench)
{
    try {
        check.run(bench);
        std::cout << "passed: " << check.name << std::endl;
        return true;
    } catch (const std::exception &error) {
        std::cout << "FAILED: " << check.name << ": " << error.what() << std::endl;
        return false;
    }
}

} // namespace

int main()
{
    bench_t bench;
    sim::fleet_t fleet = sim::default_fleet();
    fleet.instruments[bench.late_place].response_delay = bench_t::late_reply;
    bench.bus.load(fleet);
    const sim::usb::plugged_instrument_t prompt(bench.bus, bench.prompt_place, 0);
    const sim::usb::plugged_instrument_t late(bench.bus, bench.late_place, 1);
    const auto checks = all_checks();
    const auto passed = std::count_if(checks.begin(), checks.end(), [&bench](const check_t &check) {
        return passes(check, bench);
    });
    std::cout << passed << " of " << checks.size() << " checks passed" << std::endl;
    return passed == static_cast<std::ptrdiff_t>(checks.size()) ? 0 : 1;
}
