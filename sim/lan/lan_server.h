// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus.h"
#include "sim/lan/connection.h"
#include "sim/lan/link_table.h"
#include "sim/lan/listener.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace sim::lan {

/// The instruments of a bus on the network: VXI-11 with a port mapper, and SCPI over bare TCP, at
/// each instrument's own address. One thread serves all clients.
class lan_server_t
{
public:
    static constexpr std::uint16_t raw_port = 5025;

    /// More connections at once are closed as they come, and so are those beyond the descriptors
    /// that the process may have.
    static constexpr std::size_t most_connections = 1000;

    /// The bus must outlive this object. Throws lan_error_t.
    explicit lan_server_t(bus_t &instruments);

    /// Puts the instrument at a place on the network, at an IPv4 address in dotted form, and
    /// returns the port of its VXI-11 channel. Throws lan_error_t when an address or port is not to
    /// be had.
    std::uint16_t add(place_t place, const std::string &host);

    /// Serves until the descriptor `stop` is readable.
    void serve(int stop);

private:
    using make_conversation_t = std::function<std::unique_ptr<conversation_t>()>;

    void listen(place_t place, socket_t socket, make_conversation_t make);
    void accept(place_t place, socket_t peer, const make_conversation_t &make);
    bus_time_t next_wake() const;
    void resume();
    void bury();

    bus_t &bus;
    link_table_t links;
    poller_t poller;
    std::vector<std::unique_ptr<event_handler_t>> receivers;
    agenda_t agenda;
    std::unordered_map<connection_t *, std::unique_ptr<connection_t>> connections;
    std::size_t connection_limit = most_connections;
};

} // namespace sim::lan
