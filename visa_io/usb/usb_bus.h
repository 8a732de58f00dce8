// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"
#include "visa/resource_name.h"
#include "visa_io/device_link.h"

#include <memory>
#include <vector>

namespace visa_io {

/// The USB instruments that are plugged in now, in the order of their names; also those that the
/// user may not open.
std::vector<visa::object_attributes_t> find_usb_instruments();

/// Connects to a USB instrument and fills in what its attributes say. error_resource_not_found
/// when it is not plugged in or the driver is occupied until the deadline, as by another program's
/// call; error_no_permission when the user may not use it.
ViStatus open_usb_instrument(const visa::resource_name_t &name, deadline_t deadline,
                             std::unique_ptr<device_link_t> &link,
                             visa::object_attributes_t &attributes);

} // namespace visa_io
