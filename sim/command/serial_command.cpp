// SPDX-License-Identifier: MIT
#include "sim/command/serial_command.h"

#include "sim/bus/bus.h"
#include "sim/command/fleet_option.h"
#include "sim/command/stop_signals.h"
#include "sim/serial/device_link.h"
#include "sim/serial/serial_instrument.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace sim::command {

namespace {

using namespace sim::serial;
using std::chrono::milliseconds;

/// What the command line asks for.
struct request_t
{
    std::string fleet;
    int product = 0;
    std::string serial;
    int delay_ms = -1;
    std::vector<int> fragment; ///< bytes, milliseconds
    std::string link;
    bool log = false;
};

void add_options(CLI::App &app, request_t &request)
{
    add_fleet_option(app, request.fleet);
    CLI::Option *const product =
        app.add_option("--product", request.product, "The first instrument of this product");
    app.add_option("--serial", request.serial, "The instrument with this serial number")
        ->excludes(product);
    app.add_option("--delay", request.delay_ms, "From a query to its reply, in ms")
        ->check(CLI::Range(0, 60'000));
    app.add_option("--fragment", request.fragment,
                   "Send replies in pieces of so many bytes,MS apart")
        ->delimiter(',')
        ->expected(1, 2)
        ->type_name("BYTES[,MS]")
        ->check(CLI::Range(0, 60'000));
    app.add_option("--link", request.link, "Symbolic link to the device, kept up to date");
    app.add_flag("--log", request.log, "Print the messages received on the standard error output");
}

/// The first TMX of the fleet that is asked for.
const fleet_instrument_t &choose(const fleet_t &fleet, const request_t &request)
{
    const auto wanted = [&request](const fleet_instrument_t &candidate) {
        const instrument_config_t &config = candidate.config;
        return config.foreign_identity.empty() &&
               (request.product == 0 || request.product == config.product) &&
               (request.serial.empty() || request.serial == config.serial);
    };
    const auto found = std::find_if(fleet.instruments.begin(), fleet.instruments.end(), wanted);
    if (found == fleet.instruments.end())
        throw std::runtime_error("the fleet has no such instrument");
    return *found;
}

reply_pace_t pace_of(const request_t &request)
{
    reply_pace_t pace;
    if (!request.fragment.empty())
        pace.piece_bytes = static_cast<std::size_t>(request.fragment.front());
    if (request.fragment.size() > 1)
        pace.piece_pause = milliseconds(request.fragment.back());
    return pace;
}

/// The fleet with the instrument that is asked for and no other.
fleet_t only(fleet_instrument_t chosen, fleet_t fleet, const request_t &request)
{
    if (request.delay_ms >= 0)
        chosen.response_delay = milliseconds(request.delay_ms);
    fleet.instruments = {std::move(chosen)};
    return fleet;
}

void serve_line(serial_instrument_t &instrument, const std::string &link_place)
{
    pseudo_terminal_t terminal;
    const device_link_t link(link_place, terminal.path());
    std::cout << terminal.path() << std::endl;
    instrument.serve(terminal);
}

void run(const request_t &request)
{
    const fleet_t fleet = read_fleet(request.fleet);
    bus_t bus;
    bus.load(only(choose(fleet, request), fleet, request));
    const place_t place = 0;
    serial_instrument_t instrument(bus, place, pace_of(request), catch_stop_signals(),
                                   request.log ? &std::cerr : nullptr);
    do
        serve_line(instrument, request.link);
    while (instrument.wait_for_return());
}

} // namespace

void add_serial_command(CLI::App &app)
{
    CLI::App *const command =
        app.add_subcommand("serial", "One instrument behind a pseudo-terminal");
    const auto request = std::make_shared<request_t>();
    add_options(*command, *request);
    command->callback([request] { run(*request); });
}

} // namespace sim::command
