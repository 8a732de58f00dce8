// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"
#include "sim/lan/socket.h"

#include <cstdint>

namespace sim::lan {

/// Whoever is told that a descriptor is ready.
class event_handler_t
{
public:
    virtual ~event_handler_t() = default;

    /// `events` are those of epoll(7).
    virtual void ready(std::uint32_t events) = 0;
};

/// Waits for many descriptors at once; the effort does not grow with those that stay quiet.
class poller_t
{
public:
    /// Throws lan_error_t.
    poller_t();

    /// Closing the descriptor ends this. Throws lan_error_t.
    void add(int descriptor, std::uint32_t events, event_handler_t &handler);

    void change(int descriptor, std::uint32_t events, event_handler_t &handler);

    /// Tells every handler whose descriptor is ready, after waiting until `deadline` at most. No
    /// handler may be destroyed meanwhile.
    void wait(bus_time_t deadline);

private:
    socket_t epoll;
};

} // namespace sim::lan
