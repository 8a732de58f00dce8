// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"

#include <cstddef>
#include <optional>
#include <string>

namespace sim {

/// A reply on its way to the controller or waiting to be read.
struct pending_reply_t
{
    std::string bytes;
    bus_time_t ready_at = at_once;
    std::size_t bytes_read = 0;
};

/// What is on its way between one controller and the instrument (IEEE 488.2, chapter 6).
struct message_exchange_t
{
    std::string unfinished_message; ///< written so far without END
    std::optional<pending_reply_t> reply;
    bool reply_lost = false; ///< the instrument answered, but the reply was made to vanish

    /// Empties both directions, as a device clear does.
    void clear();

    /// Forgets the reply; false when there was none.
    bool drop_reply();

    /// Stores the next bytes of the reply, as bus_session_t::read() does. There must be one.
    void hand_out(char *target, std::size_t capacity, std::optional<char> term_char,
                  bus_read_t &outcome);
};

} // namespace sim
