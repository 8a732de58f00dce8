// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// Replies that are given in place of the instruments'.
class scripted_replies_t
{
public:
    struct script_t
    {
        std::optional<place_t> place; ///< nothing: every place
        std::string message;
        std::string reply;
        int times_left = -1; ///< below 0: for ever
    };

    void add(script_t script) { scripts.push_back(std::move(script)); }
    void clear() { scripts.clear(); }

    /// The reply to give, from the script added last that fits; nothing when none does.
    std::optional<std::string> take(place_t place, std::string_view message);

private:
    std::vector<script_t> scripts;
};

} // namespace sim
