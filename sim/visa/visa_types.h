// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The types and numbers of the VISA C interface that the library uses, as published in
/// VPP-4.3 (behaviour) and VPP-4.3.2 (C binding). All of them are 32 bits wide also on
/// 64-bit systems.

using ViUInt8 = std::uint8_t;
using ViUInt16 = std::uint16_t;
using ViUInt32 = std::uint32_t;
using ViInt32 = std::int32_t;
using ViStatus = ViInt32;
using ViObject = ViUInt32;
using ViSession = ViObject;
using ViFindList = ViObject;
using ViAttr = ViUInt32;
using ViAttrState = ViUInt32;
using ViAccessMode = ViUInt32;

#if defined(_WIN32) && !defined(_WIN64)
#define CORVANE_SIM_VISA_CALL __stdcall
#else
#define CORVANE_SIM_VISA_CALL
#endif

namespace sim::visa {

constexpr ViStatus error_status(ViUInt32 number)
{
    return static_cast<ViStatus>(static_cast<std::int64_t>(0xBFFF0000U | number) - 0x100000000LL);
}

constexpr ViStatus success = 0;
constexpr ViStatus success_term_char = 0x3FFF0005;
constexpr ViStatus success_max_count = 0x3FFF0006;
constexpr ViStatus warning_null_object = 0x3FFF0082;

constexpr ViStatus error_system = error_status(0x00);
constexpr ViStatus error_invalid_object = error_status(0x0E);
constexpr ViStatus error_invalid_expression = error_status(0x10);
constexpr ViStatus error_resource_not_found = error_status(0x11);
constexpr ViStatus error_invalid_resource_name = error_status(0x12);
constexpr ViStatus error_invalid_access_mode = error_status(0x13);
constexpr ViStatus error_timeout = error_status(0x15);
constexpr ViStatus error_attribute_not_supported = error_status(0x1D);
constexpr ViStatus error_attribute_state_not_supported = error_status(0x1E);
constexpr ViStatus error_attribute_read_only = error_status(0x1F);
constexpr ViStatus error_allocation = error_status(0x3C);
constexpr ViStatus error_operation_not_supported = error_status(0x67);
constexpr ViStatus error_user_buffer = error_status(0x71);
constexpr ViStatus error_connection_lost = error_status(0xA6);

constexpr ViObject null_object = 0;
constexpr ViUInt32 find_buffer_bytes = 256; ///< VI_FIND_BUFLEN
constexpr ViUInt32 timeout_immediate = 0;
constexpr ViUInt32 timeout_infinite = 0xFFFFFFFFU;

constexpr ViAccessMode access_no_lock = 0;
constexpr ViAccessMode access_load_config = 4;

constexpr ViAttr attribute_resource_class = 0xBFFF0001U;
constexpr ViAttr attribute_resource_name = 0xBFFF0002U;
constexpr ViAttr attribute_interface_name = 0xBFFF00E9U;
constexpr ViAttr attribute_resource_manufacturer_name = 0xBFFF0174U;
constexpr ViAttr attribute_tcpip_address = 0xBFFF0195U;
constexpr ViAttr attribute_usb_serial_number = 0xBFFF01A0U;
constexpr ViAttr attribute_implementation_version = 0x3FFF0003U;
constexpr ViAttr attribute_lock_state = 0x3FFF0004U;
constexpr ViAttr attribute_user_data = 0x3FFF0007U;
constexpr ViAttr attribute_send_end_enable = 0x3FFF0016U;
constexpr ViAttr attribute_term_char = 0x3FFF0018U;
constexpr ViAttr attribute_timeout = 0x3FFF001AU;
constexpr ViAttr attribute_term_char_enable = 0x3FFF0038U;
constexpr ViAttr attribute_rm_session = 0x3FFF00C4U;
constexpr ViAttr attribute_manufacturer_id = 0x3FFF00D9U;
constexpr ViAttr attribute_model_code = 0x3FFF00DFU;
constexpr ViAttr attribute_spec_version = 0x3FFF0170U;
constexpr ViAttr attribute_interface_type = 0x3FFF0171U;
constexpr ViAttr attribute_interface_number = 0x3FFF0176U;

constexpr ViUInt16 interface_type_tcpip = 6;
constexpr ViUInt16 interface_type_usb = 7;

} // namespace sim::visa
