// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace sim::lan {

/// Something that cannot be had from the system, and what helps.
class lan_error_t : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// An open descriptor, closed with this object.
class socket_t
{
public:
    explicit socket_t(int open_descriptor) : descriptor(open_descriptor) {}
    ~socket_t();
    socket_t(socket_t &&other) noexcept;
    socket_t &operator=(socket_t &&) = delete;
    socket_t(const socket_t &) = delete;
    socket_t &operator=(const socket_t &) = delete;

    int number() const { return descriptor; }

private:
    int descriptor;
};

/// A TCP socket that takes connections at an IPv4 address in dotted form, without blocking; port 0
/// is any free one. Throws lan_error_t.
socket_t listen_at(const std::string &host, std::uint16_t port);

/// A UDP socket, likewise.
socket_t receive_at(const std::string &host, std::uint16_t port);

/// The port to which a socket is bound.
std::uint16_t port_of(const socket_t &socket);

} // namespace sim::lan
