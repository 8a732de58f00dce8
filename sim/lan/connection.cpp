// SPDX-License-Identifier: MIT
#include "sim/lan/connection.h"

#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <utility>

namespace sim::lan {

namespace {

constexpr std::uint32_t reading = EPOLLIN | EPOLLRDHUP;

/// So much may wait to be sent before the next answer is made.
constexpr std::size_t most_output_bytes = 65'536;

constexpr std::size_t kept_bytes = 4096;

void empty(std::string &buffer)
{
    buffer.clear();
    if (buffer.capacity() > kept_bytes)
        buffer.shrink_to_fit();
}

} // namespace

connection_t::connection_t(socket_t peer, std::unique_ptr<conversation_t> talk, poller_t &events,
                           agenda_t &to_do)
    : socket(std::move(peer)),
      conversation(std::move(talk)),
      poller(events),
      agenda(to_do),
      watched(reading)
{
    const int yes = 1;
    setsockopt(socket.number(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    poller.add(socket.number(), watched, *this);
}

void connection_t::ready(std::uint32_t events)
{
    std::string_view received;
    const bool peer_left = (events & EPOLLRDHUP) != 0 && (watched & EPOLLIN) == 0;
    over = over || (events & (EPOLLERR | EPOLLHUP)) != 0 || peer_left ||
           ((events & EPOLLIN) != 0 && !receive(received));
    proceed(received);
}

bool connection_t::receive(std::string_view &received)
{
    // All connections take turns with one buffer.
    static std::array<char, 65'536> buffer;
    const ssize_t count = recv(socket.number(), buffer.data(), buffer.size(), 0);
    if (count < 0)
        return errno == EAGAIN || errno == EINTR;
    input_ended = count == 0;
    received = {buffer.data(), static_cast<std::size_t>(count)};
    return !input_ended || conversation->outlives_input();
}

void connection_t::proceed(std::string_view received)
{
    using state_t = progress_t::state_t;
    if (!input.empty())
        received = input.append(received);
    progress_t progress{state_t::going_on};
    while (!over && !finished && progress.state == state_t::going_on) {
        if (output.size() - sent > most_output_bytes)
            send();
        if (output.size() - sent > most_output_bytes)
            break;
        progress = conversation->advance(received, output);
        finished = progress.state == state_t::finished ||
                   (progress.state == state_t::hungry && input_ended);
    }
    send();
    over = over || (finished && output.empty());
    if (received.empty())
        empty(input);
    else
        input = std::string(received);
    wake_time = progress.until;
    watch(progress.state == state_t::waiting);
    note(progress.state == state_t::waiting);
}

void connection_t::send()
{
    while (!over && sent < output.size()) {
        const ssize_t count =
            ::send(socket.number(), output.data() + sent, output.size() - sent, MSG_NOSIGNAL);
        if (count < 0) {
            over = errno != EAGAIN && errno != EINTR;
            return;
        }
        sent += static_cast<std::size_t>(count);
    }
    sent = 0;
    empty(output);
}

void connection_t::watch(bool waiting)
{
    std::uint32_t wanted = reading;
    if (!output.empty())
        wanted = EPOLLOUT;
    else if (input_ended || (waiting && conversation->outlives_input()))
        wanted = 0;
    else if (waiting)
        wanted = EPOLLRDHUP;
    if (over || wanted == watched)
        return;
    watched = wanted;
    poller.change(socket.number(), watched, *this);
}

void connection_t::note(bool waiting)
{
    if (waiting && !over)
        agenda.waiting.insert(this);
    else if (!agenda.waiting.empty())
        agenda.waiting.erase(this);
    if (over && !std::exchange(noted_over, true))
        agenda.over.push_back(this);
}

} // namespace sim::lan
