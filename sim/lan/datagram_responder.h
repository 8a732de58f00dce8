// SPDX-License-Identifier: MIT
#pragma once

#include "sim/lan/poller.h"
#include "sim/lan/rpc_service.h"
#include "sim/lan/socket.h"

#include <memory>

namespace sim::lan {

/// Answers remote procedure calls that come in datagrams.
class datagram_responder_t : public event_handler_t
{
public:
    /// The service must be one that answers at once. Throws lan_error_t.
    datagram_responder_t(socket_t receiving, std::unique_ptr<rpc_service_t> procedures,
                         poller_t &poller);

    void ready(std::uint32_t events) override;

private:
    socket_t socket;
    std::unique_ptr<rpc_service_t> service;
};

} // namespace sim::lan
