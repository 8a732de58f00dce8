// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace sim::lan {

/// How far a conversation has come.
struct progress_t
{
    enum class state_t : std::uint8_t {
        hungry,   ///< all input is used up, nothing can be done without more
        going_on, ///< something was done, and there may be more to do
        waiting,  ///< nothing can be done until `until`, or until something else changes
        finished  ///< the connection is to be closed
    };

    state_t state = state_t::hungry;
    bus_time_t until = never;
};

/// What is said over one stream connection; it knows nothing of sockets.
class conversation_t
{
public:
    conversation_t() = default;
    virtual ~conversation_t() = default;
    conversation_t(const conversation_t &) = delete;
    conversation_t &operator=(const conversation_t &) = delete;

    /// Does the next thing: takes input from the front and appends what is to be sent.
    virtual progress_t advance(std::string_view &input, std::string &output) = 0;

    /// True when the peer may still read after it has closed its own direction.
    virtual bool outlives_input() const { return false; }
};

} // namespace sim::lan
