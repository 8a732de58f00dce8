// SPDX-License-Identifier: MIT
#include "sim/usb/usbip_link.h"

#include "rpc/xdr.h"

#include <algorithm>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sim::usb {

namespace {

constexpr std::size_t header_bytes = 48;
constexpr std::size_t most_data_bytes = std::size_t{1} << 20; ///< the kernel's buffers are smaller

enum command_t : std::uint32_t { submit = 1, unlink = 2, submit_ended = 3, unlink_ended = 4 };

std::string answer(command_t command, std::uint32_t number, urb_status_t status, std::size_t count)
{
    std::string bytes;
    rpc::xdr_writer_t out(bytes);
    const std::uint32_t items[] = {command,
                                   number,
                                   0,
                                   0,
                                   0,
                                   static_cast<std::uint32_t>(status),
                                   static_cast<std::uint32_t>(count)};
    for (const std::uint32_t item : items)
        out.number(item);
    bytes.resize(header_bytes);
    return bytes;
}

} // namespace

usbip_link_t::~usbip_link_t()
{
    close(descriptor);
}

bool usbip_link_t::wait(int timeout_ms) const
{
    pollfd host{descriptor, POLLIN, 0};
    return poll(&host, 1, timeout_ms) > 0;
}

std::optional<urb_t> usbip_link_t::receive()
{
    std::array<char, header_bytes> header;
    if (!receive(header.data(), header.size()))
        return std::nullopt;
    rpc::xdr_reader_t in({header.data(), header.size()});
    urb_t urb;
    std::uint32_t command = 0, device = 0, direction = 0, endpoint = 0, length = 0, passed_over = 0;
    for (std::uint32_t *const item :
         {&command, &urb.number, &device, &direction, &endpoint, &urb.taken_back, &length,
          &passed_over, &passed_over, &passed_over})
        in.number(*item);
    urb.takes_back = command == unlink;
    urb.is_in = direction == 1;
    urb.endpoint = static_cast<std::uint8_t>(endpoint);
    if (urb.takes_back)
        return urb;
    if (command != submit || length > most_data_bytes)
        return std::nullopt;
    urb.length = length;
    std::copy(in.remaining().begin(), in.remaining().end(), urb.setup.begin());
    urb.data.resize(urb.is_in ? 0 : length);
    if (!receive(urb.data.data(), urb.data.size()))
        return std::nullopt;
    return urb;
}

void usbip_link_t::end(const urb_t &urb, urb_status_t status, std::string_view data)
{
    const std::size_t accepted = status == urb_status_t::done ? urb.data.size() : 0;
    std::string bytes =
        answer(submit_ended, urb.number, status, urb.is_in ? data.size() : accepted);
    bytes += data;
    send(bytes);
}

void usbip_link_t::end_taken_back(const urb_t &urb, bool in_time)
{
    send(
        answer(unlink_ended, urb.number, in_time ? urb_status_t::unlinked : urb_status_t::done, 0));
}

bool usbip_link_t::receive(char *target, std::size_t count) const
{
    return count == 0 ||
           recv(descriptor, target, count, MSG_WAITALL) == static_cast<ssize_t>(count);
}

void usbip_link_t::send(std::string_view bytes) const
{
    // A host that has gone is found by the next receive().
    while (!bytes.empty()) {
        const ssize_t count = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace sim::usb
