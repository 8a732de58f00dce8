// SPDX-License-Identifier: MIT
#include "sim/lan/lan_server.h"

#include "sim/lan/datagram_responder.h"
#include "sim/lan/port_mapper.h"
#include "sim/lan/raw_conversation.h"
#include "sim/lan/rpc_conversation.h"
#include "sim/lan/vxi11_service.h"

#include <algorithm>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <utility>

namespace sim::lan {

namespace {

/// Standard streams, the poller, a connection that is only accepted to be closed...
constexpr std::size_t other_descriptors = 32;

/// Takes as many descriptors as there are to be had, and returns how many that is.
std::size_t claim_descriptors()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit.rlim_cur;
}

/// Notes that the process is to end.
class stop_watch_t : public event_handler_t
{
public:
    void ready(std::uint32_t /*events*/) override { stopped = true; }

    bool stopped = false;
};

} // namespace

lan_server_t::lan_server_t(bus_t &instruments) : bus(instruments)
{
    claim_descriptors();
}

std::uint16_t lan_server_t::add(place_t place, const std::string &host)
{
    socket_t core = listen_at(host, 0);
    const std::uint16_t core_port = port_of(core);
    const auto make_mapper = [host, core_port] {
        return std::make_unique<port_mapper_t>(host, core_port);
    };
    receivers.push_back(std::make_unique<datagram_responder_t>(
        receive_at(host, port_mapper_t::port), make_mapper(), poller));
    listen(place, listen_at(host, port_mapper_t::port),
           [make_mapper] { return std::make_unique<rpc_conversation_t>(make_mapper()); });
    listen(place, listen_at(host, raw_port),
           [this, place] { return std::make_unique<raw_conversation_t>(bus, place, links); });
    listen(place, std::move(core), [this, place, core_port] {
        return std::make_unique<rpc_conversation_t>(
            std::make_unique<vxi11_service_t>(bus, place, core_port, links));
    });
    return core_port;
}

void lan_server_t::listen(place_t place, socket_t socket, make_conversation_t make)
{
    const auto take = [this, place, make = std::move(make)](socket_t peer) {
        accept(place, std::move(peer), make);
    };
    receivers.push_back(std::make_unique<listener_t>(std::move(socket), poller, take));
}

void lan_server_t::accept(place_t place, socket_t peer, const make_conversation_t &make)
{
    if (!bus.is_present(place) || connections.size() >= connection_limit)
        return;
    auto connection = std::make_unique<connection_t>(std::move(peer), make(), poller, agenda);
    connection_t *const key = connection.get();
    connections.emplace(key, std::move(connection));
}

void lan_server_t::serve(int stop)
{
    stop_watch_t watch;
    poller.add(stop, EPOLLIN, watch);
    const std::size_t taken = receivers.size() + other_descriptors;
    const std::size_t descriptors = claim_descriptors();
    connection_limit = std::min(most_connections, descriptors - std::min(descriptors, taken));
    while (!watch.stopped) {
        poller.wait(next_wake());
        resume();
        bury();
    }
}

bus_time_t lan_server_t::next_wake() const
{
    if (links.has_change())
        return at_once;
    bus_time_t earliest = never;
    for (const connection_t *const connection : agenda.waiting)
        earliest = std::min(earliest, connection->wakes_at());
    return earliest;
}

void lan_server_t::resume()
{
    std::vector<connection_t *> due;
    const bool all = links.take_change();
    const bus_time_t now = agenda.waiting.empty() ? never : bus_clock_t::now();
    if (all)
        for (const auto &[connection, owner] : connections)
            due.push_back(connection);
    else
        std::copy_if(agenda.waiting.begin(), agenda.waiting.end(), std::back_inserter(due),
                     [now](const connection_t *waiting) { return waiting->wakes_at() <= now; });
    for (connection_t *const connection : due)
        connection->resume();
}

void lan_server_t::bury()
{
    for (connection_t *const connection : agenda.over)
        connections.erase(connection);
    agenda.over.clear();
}

} // namespace sim::lan
