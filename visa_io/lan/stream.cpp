// SPDX-License-Identifier: MIT
#include "visa_io/lan/stream.h"

#include "visa_io/lan/stop_signal.h"

#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace visa_io {

namespace {

constexpr std::size_t buffer_bytes = 65536;

int milliseconds_until(deadline_t deadline)
{
    const auto left =
        std::min<io_clock_t::duration>(deadline - io_clock_t::now(), std::chrono::hours(1));
    return static_cast<int>(
        std::max<std::int64_t>(0, std::chrono::ceil<std::chrono::milliseconds>(left).count()));
}

bool must_wait()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

int connection_error(int socket)
{
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

} // namespace

stream_t::stream_t(const stop_signal_t &stop_signal, int connected_socket)
    : stop(stop_signal), descriptor(connected_socket), buffer(buffer_bytes)
{
}

stream_t::~stream_t()
{
    close();
}

void stream_t::close()
{
    if (is_open())
        ::close(std::exchange(descriptor, -1));
}

ViStatus stream_t::fail(ViStatus status)
{
    close();
    return status;
}

ViStatus stream_t::wait(short events, deadline_t deadline)
{
    pollfd waited[] = {{descriptor, events, 0}, {stop.descriptor(), POLLIN, 0}};
    for (;;) {
        const int ready = poll(waited, std::size(waited), milliseconds_until(deadline));
        // Also when it is ready: a peer that never pauses leaves poll nothing to wait for.
        if (waited[1].revents != 0 || io_clock_t::now() >= deadline)
            return fail(visa::error_timeout);
        if (ready > 0)
            return visa::success;
        if (ready < 0 && errno != EINTR)
            return fail(visa::error_connection_lost);
    }
}

ViStatus stream_t::connect(in_addr host, std::uint16_t port, deadline_t deadline)
{
    close();
    descriptor = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (!is_open())
        return visa::error_connection_lost;
    // Each request is one write and waits for its reply.
    const int yes = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr = host;
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return visa::success;
    if (errno != EINPROGRESS && errno != EINTR)
        return fail(visa::error_connection_lost);
    const ViStatus status = wait(POLLOUT, deadline);
    if (status != visa::success)
        return status;
    return connection_error(descriptor) == 0 ? visa::success : fail(visa::error_connection_lost);
}

ViStatus stream_t::send(std::string_view bytes, deadline_t deadline)
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(sent));
            continue;
        }
        if (!must_wait())
            return fail(visa::error_connection_lost);
        const ViStatus status = wait(POLLOUT, deadline);
        if (status != visa::success)
            return status;
    }
    return visa::success;
}

ViStatus stream_t::receive(std::string_view &bytes, deadline_t deadline)
{
    for (;;) {
        const ViStatus status = wait(POLLIN, deadline);
        if (status != visa::success)
            return status;
        const ssize_t received = recv(descriptor, buffer.data(), buffer.size(), 0);
        if (received > 0) {
            bytes = {buffer.data(), static_cast<std::size_t>(received)};
            return visa::success;
        }
        if (received == 0 || !must_wait())
            return fail(visa::error_connection_lost);
    }
}

} // namespace visa_io
