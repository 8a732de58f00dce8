// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// What arrived at the instruments, one entry a successful write.
class traffic_log_t
{
public:
    struct entry_t
    {
        std::string resource;
        std::string bytes;
        bus_time_t time;
    };

    /// Beyond so many entries nothing is noted any more.
    static constexpr std::size_t most_entries = 1'000'000;

    void note(const std::string &resource, std::string_view bytes)
    {
        if (enabled && noted.size() < most_entries)
            noted.push_back({resource, std::string(bytes), bus_clock_t::now()});
    }

    void clear() { noted.clear(); }
    const std::vector<entry_t> &entries() const { return noted; }

    bool enabled = true;

private:
    std::vector<entry_t> noted;
};

} // namespace sim
