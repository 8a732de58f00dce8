// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace visa {

/// What a VISA resource name says (VPP-4.3, chapter 4.3.1).
struct resource_name_t
{
    enum class bus_t : std::uint8_t { usb, tcpip, other };

    bus_t bus = bus_t::other;    ///< of an instrument that a library of ours can reach
    ViUInt16 interface_type = 0; ///< as VI_ATTR_INTF_TYPE numbers them
    ViUInt16 board = 0;
    std::string resource_class;   ///< "INSTR"
    ViUInt16 manufacturer_id = 0; ///< USB only
    ViUInt16 model_code = 0;      ///< USB only
    std::string serial_number;    ///< USB only
    ViUInt16 usb_interface = 0;   ///< USB only
    std::string host;             ///< TCPIP only: an address or a name
    std::string device_name;      ///< TCPIP only

    /// The name with what may be left out: board number and resource class. Defaults that may
    /// follow (LAN device name "inst0", USB interface 0) stay away, as in searches.
    std::string canonical;

    /// A text that is equal for all spellings of one resource: letter case, left-out board
    /// number, LAN device name, interface number and "INSTR", hexadecimal or decimal ids.
    std::string key;
};

/// Reads a resource name; nothing when it is malformed. Well-formed names of other
/// interfaces and resource classes are read as bus_t::other.
std::optional<resource_name_t> read_resource_name(std::string_view text);

} // namespace visa
