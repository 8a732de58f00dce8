// SPDX-License-Identifier: MIT
#include "sim/lan/poller.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <sys/epoll.h>

namespace sim::lan {

namespace {

constexpr std::size_t most_events = 256;

int timeout_ms(bus_time_t deadline)
{
    using std::chrono::milliseconds;
    constexpr milliseconds longest = std::chrono::hours(1);
    const bus_time_t now = bus_clock_t::now();
    if (deadline <= now)
        return 0;
    if (deadline >= now + longest)
        return static_cast<int>(longest.count());
    return static_cast<int>(std::chrono::ceil<milliseconds>(deadline - now).count());
}

} // namespace

poller_t::poller_t() : epoll(epoll_create1(EPOLL_CLOEXEC))
{
    if (epoll.number() < 0)
        throw lan_error_t(std::string("epoll: ") + std::strerror(errno));
}

void poller_t::add(int descriptor, std::uint32_t events, event_handler_t &handler)
{
    epoll_event event{};
    event.events = events;
    event.data.ptr = &handler;
    if (epoll_ctl(epoll.number(), EPOLL_CTL_ADD, descriptor, &event) != 0)
        throw lan_error_t(std::string("epoll: ") + std::strerror(errno));
}

void poller_t::change(int descriptor, std::uint32_t events, event_handler_t &handler)
{
    epoll_event event{};
    event.events = events;
    event.data.ptr = &handler;
    epoll_ctl(epoll.number(), EPOLL_CTL_MOD, descriptor, &event);
}

void poller_t::wait(bus_time_t deadline)
{
    std::array<epoll_event, most_events> events;
    const int count = epoll_wait(epoll.number(), events.data(), most_events, timeout_ms(deadline));
    for (int index = 0; index < count; ++index) {
        const epoll_event &event = events.at(static_cast<std::size_t>(index));
        static_cast<event_handler_t *>(event.data.ptr)->ready(event.events);
    }
}

} // namespace sim::lan
