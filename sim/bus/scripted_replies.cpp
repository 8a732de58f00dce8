// SPDX-License-Identifier: MIT
#include "sim/bus/scripted_replies.h"

#include <algorithm>
#include <iterator>

namespace sim {

std::optional<std::string> scripted_replies_t::take(place_t place, std::string_view message)
{
    const auto last_fit =
        std::find_if(scripts.rbegin(), scripts.rend(), [&](const script_t &script) {
            return (!script.place || *script.place == place) && script.message == message;
        });
    if (last_fit == scripts.rend())
        return std::nullopt;
    std::string reply = last_fit->reply;
    if (last_fit->times_left > 0 && --last_fit->times_left == 0)
        scripts.erase(std::next(last_fit).base());
    return reply;
}

} // namespace sim
