// SPDX-License-Identifier: MIT
#include "sim/lan/datagram_responder.h"

#include <array>
#include <netinet/in.h>
#include <string>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <utility>

namespace sim::lan {

namespace {

/// A longer call asks for nothing that is served.
constexpr std::size_t most_datagram_bytes = 2048;

} // namespace

datagram_responder_t::datagram_responder_t(socket_t receiving,
                                           std::unique_ptr<rpc_service_t> procedures,
                                           poller_t &poller)
    : socket(std::move(receiving)), service(std::move(procedures))
{
    poller.add(socket.number(), EPOLLIN, *this);
}

void datagram_responder_t::ready(std::uint32_t /*events*/)
{
    std::array<char, most_datagram_bytes> call;
    sockaddr_in peer{};
    socklen_t peer_bytes = sizeof peer;
    auto *const address = reinterpret_cast<sockaddr *>(&peer);
    const ssize_t count =
        recvfrom(socket.number(), call.data(), call.size(), 0, address, &peer_bytes);
    if (count < 0)
        return;
    std::string reply;
    bus_time_t until = never;
    const std::string_view message(call.data(), static_cast<std::size_t>(count));
    if (answer_call(*service, message, false, reply, until) == answer_t::given)
        sendto(socket.number(), reply.data(), reply.size(), 0, address, peer_bytes);
}

} // namespace sim::lan
