// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"
#include "visa/resource_name.h"
#include "visa_io/device_link.h"

#include <memory>
#include <vector>

namespace visa_io {

/// The instruments that the kernel's USBTMC driver has now, also those that may not be opened;
/// in the order of their names.
std::vector<visa::object_attributes_t> find_usb_instruments();

/// Connects to an instrument and sets its session's attributes. One that is not there is
/// error_resource_not_found, one that the user may not open error_no_permission.
ViStatus open_usb_instrument(const visa::resource_name_t &name, deadline_t deadline,
                             std::unique_ptr<device_link_t> &link,
                             visa::object_attributes_t &attributes);

} // namespace visa_io
