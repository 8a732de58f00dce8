// SPDX-License-Identifier: MIT
#include "sim/command/lan_command.h"

#include "sim/bus/bus.h"
#include "sim/command/fleet_option.h"
#include "sim/command/stop_signals.h"
#include "sim/lan/lan_server.h"
#include "sim/lan/vxi11_service.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <arpa/inet.h>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace sim::command {

namespace {

/// What the command line asks for.
struct request_t
{
    std::string fleet;
    std::vector<std::string> addresses; ///< that are served although others can reach them
};

/// A LAN instrument of the fleet.
struct lan_place_t
{
    place_t place;
    std::string name;
    std::string host;
};

bool is_loopback(const std::string &host)
{
    in_addr address{};
    return inet_pton(AF_INET, host.c_str(), &address) == 1 &&
           ntohl(address.s_addr) >> 24 == IN_LOOPBACKNET;
}

std::vector<lan_place_t> lan_places(bus_t &bus)
{
    std::vector<lan_place_t> found;
    const auto access = bus.access();
    const auto &places = access->places();
    for (place_t place = 0; place < places.size(); ++place)
        if (places[place].name.bus == ::visa::resource_name_t::bus_t::tcpip &&
            lan::vxi11_service_t::is_served(places[place].name.device_name))
            found.push_back({place, places[place].name_text, places[place].name.host});
    return found;
}

/// The instruments at loopback addresses and at those that are named. Throws std::runtime_error.
std::vector<lan_place_t> choose(std::vector<lan_place_t> places, const request_t &request)
{
    const auto &named = request.addresses;
    for (const std::string &address : named)
        if (std::none_of(places.begin(), places.end(),
                         [&address](const lan_place_t &place) { return place.host == address; }))
            throw std::runtime_error("the fleet has no LAN instrument at " + address);
    const auto left_out = [&named](const lan_place_t &place) {
        return !is_loopback(place.host) &&
               std::find(named.begin(), named.end(), place.host) == named.end();
    };
    for (const lan_place_t &place : places)
        if (left_out(place))
            std::cerr << place.name << " is left out: not a loopback address, and not named\n";
    places.erase(std::remove_if(places.begin(), places.end(), left_out), places.end());
    if (places.empty())
        throw std::runtime_error("the fleet has no LAN instrument to serve");
    return places;
}

void run(const request_t &request)
{
    const int stop = catch_stop_signals();
    bus_t bus;
    bus.load(read_fleet(request.fleet));
    // What goes over the network is nobody's to read here, and must not pile up.
    bus.access()->log.enabled = false;
    lan::lan_server_t server(bus);
    std::string ports;
    for (const lan_place_t &place : choose(lan_places(bus), request))
        ports += place.name + ": VXI-11 on port " +
                 std::to_string(server.add(place.place, place.host)) + ", SCPI on port " +
                 std::to_string(lan::lan_server_t::raw_port) + '\n';
    std::cout << ports << std::flush;
    server.serve(stop);
}

} // namespace

void add_lan_command(CLI::App &app)
{
    CLI::App *const command = app.add_subcommand(
        "lan", "The LAN instruments, each at its own address: VXI-11 and SCPI over TCP");
    const auto request = std::make_shared<request_t>();
    add_fleet_option(*command, request->fleet);
    command->add_option("--address", request->addresses,
                        "An IPv4 address of an instrument that is served although it is not a "
                        "loopback address");
    command->callback([request] { run(*request); });
}

} // namespace sim::command
