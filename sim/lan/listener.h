// SPDX-License-Identifier: MIT
#pragma once

#include "sim/lan/poller.h"
#include "sim/lan/socket.h"

#include <functional>

namespace sim::lan {

/// Takes the connections that come to a TCP port.
class listener_t : public event_handler_t
{
public:
    using accept_t = std::function<void(socket_t peer)>;

    /// Throws lan_error_t.
    listener_t(socket_t listening, poller_t &poller, accept_t on_connection);

    void ready(std::uint32_t events) override;

private:
    socket_t socket;
    accept_t accept_connection;
};

} // namespace sim::lan
