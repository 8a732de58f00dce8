// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Stores a reply in `out` without its last character, the instrument's line terminator, whichever
/// that is. False, with `out` left alone, when there is no reply at all.
inline bool take_reply(std::string reply, std::string &out)
{
    if (reply.empty())
        return false;
    reply.pop_back();
    out = std::move(reply);
    return true;
}
