// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus.h"
#include "sim/usb/descriptors.h"

#include <atomic>
#include <string>
#include <thread>

namespace sim::usb {

/// An instrument of the bus in a socket of the kernel's virtual host controller: plugged in
/// whenever it is on the bus, from a thread of its own.
class plugged_instrument_t
{
public:
    /// `socket` counts from 0. The bus has to outlive this object.
    plugged_instrument_t(bus_t &its_bus, place_t its_place, unsigned its_socket);

    /// Pulls the plug.
    ~plugged_instrument_t();
    plugged_instrument_t(const plugged_instrument_t &) = delete;
    plugged_instrument_t &operator=(const plugged_instrument_t &) = delete;

private:
    void run();
    void serve_once(std::shared_ptr<bus_session_t> session) const;
    usb_identity_t identity() const;

    bus_t &bus;
    const place_t place;
    const unsigned socket;
    std::atomic<bool> stopping{false};
    std::thread thread;
};

} // namespace sim::usb
