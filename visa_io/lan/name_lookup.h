// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"

#include <netinet/in.h>

#include <string>
#include <vector>

namespace visa_io {

/// The IPv4 addresses of a host, that is a name or an address in dotted form; none when there are
/// none or the system does not tell them before the deadline.
std::vector<in_addr> look_up(const std::string &host, deadline_t deadline);

} // namespace visa_io
