// SPDX-License-Identifier: MIT
#include "sim/lan/listener.h"

#include <sys/epoll.h>
#include <sys/socket.h>
#include <utility>

namespace sim::lan {

listener_t::listener_t(socket_t listening, poller_t &poller, accept_t on_connection)
    : socket(std::move(listening)), accept_connection(std::move(on_connection))
{
    poller.add(socket.number(), EPOLLIN, *this);
}

void listener_t::ready(std::uint32_t /*events*/)
{
    const int peer = accept4(socket.number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (peer >= 0)
        accept_connection(socket_t(peer));
}

} // namespace sim::lan
