// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"

#include <string>
#include <vector>

namespace visa_io {

/// An interface of a USB device that the kernel's usbtmc driver serves.
struct usb_node_t
{
    std::string path; ///< "/dev/usbtmc0"
    visa::object_attributes_t attributes;
};

/// Those that are there now, in the order of their resource names. A device whose serial number is
/// missing or cannot be part of a resource name is left out: no name would reach it.
std::vector<usb_node_t> usb_nodes();

} // namespace visa_io
