// SPDX-License-Identifier: MIT
#include "visa_io/bus_table.h"

#include "visa_io/lan/lan_bus.h"
#include "visa_io/usb/usb_bus.h"

#include <algorithm>
#include <iterator>

namespace visa_io {

namespace {

using kind_t = visa::resource_name_t::bus_t;

constexpr bus_t buses[] = {
    {kind_t::usb, find_usb_instruments, open_usb_instrument},
    {kind_t::tcpip, find_lan_instruments, open_lan_instrument},
};

} // namespace

std::vector<visa::object_attributes_t> find_instruments()
{
    std::vector<visa::object_attributes_t> all;
    for (const bus_t &bus : buses) {
        const auto found = bus.find();
        all.insert(all.end(), found.begin(), found.end());
    }
    return all;
}

const bus_t *bus_of(const visa::resource_name_t &name)
{
    const auto *const bus = std::find_if(std::begin(buses), std::end(buses),
                                         [&](const bus_t &row) { return row.kind == name.bus; });
    return bus == std::end(buses) ? nullptr : bus;
}

} // namespace visa_io
