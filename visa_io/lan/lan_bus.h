// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"
#include "visa/resource_name.h"
#include "visa_io/device_link.h"

#include <memory>
#include <vector>

namespace visa_io {

/// None: instruments on LAN are opened by their address or name.
std::vector<visa::object_attributes_t> find_lan_instruments();

/// Connects to an instrument, all within the deadline: error_resource_not_found when there is none,
/// error_resource_locked when another client has locked it.
ViStatus open_lan_instrument(const visa::resource_name_t &name, deadline_t deadline,
                             std::unique_ptr<device_link_t> &link,
                             visa::object_attributes_t &attributes);

} // namespace visa_io
