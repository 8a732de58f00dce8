// SPDX-License-Identifier: MIT
#include "sim/lan/socket.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace sim::lan {

namespace {

constexpr int first_free_port = 1024;
constexpr const char *remedy =
    "\nPorts below 1024 take a right, and the system's rpcbind may have port 111. Either start the "
    "simulator\nin a network namespace of its own,\n"
    "    unshare -r -n sh -c 'ip link set lo up; corvane-sim lan & exec \"$SHELL\"'\n"
    "or, where the port is free, give the program the right:\n"
    "    sudo setcap cap_net_bind_service=ep \"$(command -v corvane-sim)\"";

[[noreturn]] void fail(const std::string &host, std::uint16_t port)
{
    const int error = errno;
    const bool is_port_refused =
        port != 0 && port < first_free_port && (error == EACCES || error == EADDRINUSE);
    throw lan_error_t(host + ", port " + std::to_string(port) + ": " + std::strerror(error) +
                      (is_port_refused ? remedy : ""));
}

socket_t bound(int type, const std::string &host, std::uint16_t port)
{
    socket_t socket(::socket(AF_INET, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const int yes = 1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (inet_pton(AF_INET, host.c_str(), &address.sin_addr) != 1)
        throw lan_error_t(host + ": not an IPv4 address");
    if (type == SOCK_STREAM)
        setsockopt(socket.number(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (bind(socket.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        fail(host, port);
    return socket;
}

} // namespace

socket_t::~socket_t()
{
    if (descriptor >= 0)
        close(descriptor);
}

socket_t::socket_t(socket_t &&other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}

socket_t listen_at(const std::string &host, std::uint16_t port)
{
    socket_t socket = bound(SOCK_STREAM, host, port);
    if (listen(socket.number(), SOMAXCONN) != 0)
        fail(host, port);
    return socket;
}

socket_t receive_at(const std::string &host, std::uint16_t port)
{
    return bound(SOCK_DGRAM, host, port);
}

std::uint16_t port_of(const socket_t &socket)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(socket.number(), reinterpret_cast<sockaddr *>(&address), &size);
    return ntohs(address.sin_port);
}

} // namespace sim::lan
