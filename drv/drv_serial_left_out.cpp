// SPDX-License-Identifier: MIT
// In place of drv_serial.cpp where Qt has no serial port module.
#include "drv/drv_serial.h"

drv_serial_t::drv_serial_t() = default;

drv_serial_t &drv_serial_t::instance()
{
    static drv_serial_t serial;
    return serial;
}

std::vector<found_instrument_t> drv_serial_t::find()
{
    return {};
}

bool drv_serial_t::open(const std::string & /*port_name*/)
{
    return false;
}

void drv_serial_t::close() {}

bool drv_serial_t::write(const std::string & /*text*/)
{
    return false;
}

bool drv_serial_t::read(std::string & /*out*/)
{
    return false;
}

bool drv_serial_t::query(const std::string & /*text*/, std::string & /*out*/)
{
    return false;
}
