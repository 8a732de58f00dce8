// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus.h"

#include <functional>
#include <string>
#include <vector>

namespace usb_kernel {

/// The bench on which the checks are done: both instruments are plugged in, the second one answers
/// only after `late_reply`.
struct bench_t
{
    static constexpr std::chrono::milliseconds late_reply{1200};

    sim::bus_t bus;
    sim::place_t prompt_place = 0;
    sim::place_t late_place = 1;

    std::string name(sim::place_t place) { return bus.access()->place(place).name_text; }
};

/// One thing that has to be true of an instrument behind the kernel's driver.
struct check_t
{
    const char *name;
    std::function<void(bench_t &)> run; ///< throws std::runtime_error when it is not
};

/// In the order in which they are to be done.
std::vector<check_t> all_checks();

} // namespace usb_kernel
