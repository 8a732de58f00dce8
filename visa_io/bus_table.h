// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"
#include "visa/resource_name.h"
#include "visa_io/device_link.h"

#include <memory>
#include <vector>

namespace visa_io {

/// A kind of bus on which instruments are.
struct bus_t
{
    visa::resource_name_t::bus_t kind;

    /// The instruments that are there now, in a stable order.
    std::vector<visa::object_attributes_t> (*find)();

    /// Connects to an instrument and says what its session's attributes are.
    ViStatus (*open)(const visa::resource_name_t &name, deadline_t deadline,
                     std::unique_ptr<device_link_t> &link, visa::object_attributes_t &attributes);
};

/// The instruments of all buses.
std::vector<visa::object_attributes_t> find_instruments();

/// The bus of an instrument; null when there is no such bus.
const bus_t *bus_of(const visa::resource_name_t &name);

} // namespace visa_io
