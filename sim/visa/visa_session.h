// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/resource_name.h"
#include "sim/visa/visa_types.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace sim::visa {

using bus_clock_t = std::chrono::steady_clock;

/// A reply on its way to the controller or waiting to be read.
struct pending_reply_t
{
    std::string bytes;
    bus_clock_t::time_point ready_at;
    std::size_t bytes_read = 0;
};

/// One open instrument session. Guarded by the library's mutex.
struct visa_session_t
{
    ViSession handle = null_object;
    ViSession resource_manager = null_object;
    std::size_t resource = 0;     ///< place on the bus
    std::uint64_t connection = 0; ///< which connection of the resource the session belongs to
    std::string name_text;
    resource_name_t name;

    ViUInt32 timeout_ms = 0;
    ViUInt8 term_char = '\n';
    bool term_char_enabled = false;
    bool send_end_enabled = true;
    ViUInt32 user_data = 0;

    std::string unfinished_message; ///< written so far without END
    std::optional<pending_reply_t> reply;
    bool reply_lost = false; ///< the instrument answered, but the reply was made to vanish
    bool closed = false;     ///< for calls that wait while another thread closes the session
};

} // namespace sim::visa
