// SPDX-License-Identifier: MIT
#pragma once

#include "sim/usb/descriptors.h"
#include "sim/usb/usbip_link.h"
#include "sim/usb/usbtmc_interface.h"

#include <deque>

namespace sim::usb {

/// A USB device with a simulated instrument in it, as long as its plug is in.
class usb_device_t
{
public:
    usb_device_t(usbip_link_t &its_link, usb_identity_t its_identity,
                 usbtmc_interface_t its_interface)
        : link(its_link), identity(std::move(its_identity)), interface(std::move(its_interface))
    {
    }

    /// Serves the host until it is gone or the instrument leaves the bus.
    void serve();

private:
    void take(const urb_t &urb);
    void control(const urb_t &urb);
    usb_answer_t answer_standard(const usb_setup_t &setup);
    void take_back(const urb_t &urb);
    void end_waiting();

    usbip_link_t &link;
    usb_identity_t identity;
    usbtmc_interface_t interface;
    std::deque<urb_t> waiting; ///< inward transfers, oldest first
};

} // namespace sim::usb
