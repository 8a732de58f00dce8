// SPDX-License-Identifier: MIT
#include "drv/transport.h"

#include "drv/drv_device.h"
#include "drv/drv_serial.h"
#include "drv/visa_transport.h"

transport_t &transport_t::current()
{
    if (drv_device_t::instance()->visa_is_ready())
        return visa_transport_t::instance();
    return drv_serial_t::instance();
}
