// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim::visa {

/// Replies that are given in place of the instruments'. Guarded by the library's mutex.
class scripted_replies_t
{
public:
    struct script_t
    {
        std::optional<std::size_t> resource; ///< nothing: every resource
        std::string message;
        std::string reply;
        int times_left = -1; ///< below 0: for ever
    };

    void add(script_t script) { scripts.push_back(std::move(script)); }
    void clear() { scripts.clear(); }

    /// The reply to give, from the script added last that fits; nothing when none does.
    std::optional<std::string> take(std::size_t resource, std::string_view message);

private:
    std::vector<script_t> scripts;
};

} // namespace sim::visa
