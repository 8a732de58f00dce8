// SPDX-License-Identifier: MIT
#pragma once

#include "sim/usb/usb_setup.h"

#include <cstdint>
#include <string>

namespace sim::usb {

/// Endpoints of the instrument, with the direction.
constexpr std::uint8_t bulk_out_endpoint = 0x01;
constexpr std::uint8_t bulk_in_endpoint = 0x82;
constexpr std::uint8_t interrupt_endpoint = 0x83;

/// The largest packet of the bulk endpoints at high speed.
constexpr std::size_t bulk_packet_bytes = 512;

/// How an instrument names itself on USB.
struct usb_identity_t
{
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
    std::string manufacturer_name;
    std::string product_name;
    std::string serial_number;
};

/// The descriptor that a standard request asks for: of a device with one interface, of the class
/// USBTMC with subclass USB488, with an interrupt endpoint.
usb_answer_t descriptor(const usb_identity_t &identity, const usb_setup_t &setup);

} // namespace sim::usb
