// SPDX-License-Identifier: MIT
#include "sim/usb/plugged_instrument.h"

#include "sim/usb/usb_device.h"

#include <array>
#include <fstream>
#include <sys/socket.h>
#include <unistd.h>

namespace sim::usb {

namespace {

constexpr int high_speed = 3;
constexpr std::chrono::milliseconds look_interval{20};

/// Gives the host's end of a link to the controller; false while the socket is in use.
bool attach(unsigned socket, int host_end)
{
    std::ofstream file("/sys/devices/platform/vhci_hcd.0/attach");
    file << socket << ' ' << host_end << ' ' << socket + 1 << ' ' << high_speed << std::flush;
    return file.good();
}

} // namespace

plugged_instrument_t::plugged_instrument_t(bus_t &its_bus, place_t its_place, unsigned its_socket)
    : bus(its_bus), place(its_place), socket(its_socket), thread([this] { run(); })
{
}

plugged_instrument_t::~plugged_instrument_t()
{
    stopping = true;
    bus.access()->unplug(place);
    thread.join();
}

void plugged_instrument_t::run()
{
    while (!stopping) {
        if (auto session = bus.open(place))
            serve_once(std::move(session));
        std::this_thread::sleep_for(look_interval);
    }
}

void plugged_instrument_t::serve_once(std::shared_ptr<bus_session_t> session) const
{
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
        return;
    usbip_link_t link(ends[0]);
    const bool attached = attach(socket, ends[1]);
    close(ends[1]);
    if (attached)
        usb_device_t(link, identity(), usbtmc_interface_t(std::move(session))).serve();
}

usb_identity_t plugged_instrument_t::identity() const
{
    const auto access = bus.access();
    const auto &name = access->place(place).name;

    return {name.manufacturer_id, name.model_code, "Simulator", "Simulated instrument",
            name.serial_number};
}

} // namespace sim::usb
