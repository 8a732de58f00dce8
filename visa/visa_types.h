// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The types and numbers of the VISA C interface that a library of ours uses, as published in
/// VPP-4.3 (behaviour) and VPP-4.3.2 (C binding). All of them are 32 bits wide also on 64-bit
/// systems, but for ViAttrState and addresses.

using ViUInt8 = std::uint8_t;
using ViUInt16 = std::uint16_t;
using ViUInt32 = std::uint32_t;
using ViInt16 = std::int16_t;
using ViInt32 = std::int32_t;
using ViStatus = ViInt32;
using ViObject = ViUInt32;
using ViSession = ViObject;
using ViFindList = ViObject;
using ViEvent = ViObject;
using ViAttr = ViUInt32;
using ViAttrState = std::uintptr_t;
using ViAccessMode = ViUInt32;
using ViEventType = ViUInt32;
using ViAddr = void *;

#if defined(_WIN32) && !defined(_WIN64)
#define CORVANE_VISA_CALL __stdcall
#else
#define CORVANE_VISA_CALL
#endif

using ViHndlr = ViStatus(CORVANE_VISA_CALL *)(ViSession session, ViEventType type, ViEvent context,
                                              ViAddr user_handle);

namespace visa {

constexpr ViStatus error_status(ViUInt32 number)
{
    return static_cast<ViStatus>(static_cast<std::int64_t>(0xBFFF0000U | number) - 0x100000000LL);
}

constexpr ViStatus success = 0;
constexpr ViStatus success_event_enabled = 0x3FFF0002;  ///< it was already
constexpr ViStatus success_event_disabled = 0x3FFF0003; ///< it was already
constexpr ViStatus success_queue_empty = 0x3FFF0004;
constexpr ViStatus success_term_char = 0x3FFF0005;
constexpr ViStatus success_max_count = 0x3FFF0006;
constexpr ViStatus success_nested_shared = 0x3FFF0099;
constexpr ViStatus success_nested_exclusive = 0x3FFF009A;
constexpr ViStatus warning_null_object = 0x3FFF0082;
constexpr ViStatus warning_unknown_status = 0x3FFF0085;
constexpr ViStatus warning_buffer_not_supported = 0x3FFF0088;

constexpr ViStatus error_system = error_status(0x00);
constexpr ViStatus error_invalid_object = error_status(0x0E);
constexpr ViStatus error_resource_locked = error_status(0x0F);
constexpr ViStatus error_invalid_expression = error_status(0x10);
constexpr ViStatus error_resource_not_found = error_status(0x11);
constexpr ViStatus error_invalid_resource_name = error_status(0x12);
constexpr ViStatus error_invalid_access_mode = error_status(0x13);
constexpr ViStatus error_timeout = error_status(0x15);
constexpr ViStatus error_attribute_not_supported = error_status(0x1D);
constexpr ViStatus error_attribute_state_not_supported = error_status(0x1E);
constexpr ViStatus error_attribute_read_only = error_status(0x1F);
constexpr ViStatus error_invalid_lock_type = error_status(0x20);
constexpr ViStatus error_invalid_access_key = error_status(0x21);
constexpr ViStatus error_invalid_event = error_status(0x26);
constexpr ViStatus error_invalid_mechanism = error_status(0x27);
constexpr ViStatus error_handler_not_installed = error_status(0x28);
constexpr ViStatus error_invalid_handler_reference = error_status(0x29);
constexpr ViStatus error_invalid_context = error_status(0x2A);
constexpr ViStatus error_not_enabled = error_status(0x2F);
constexpr ViStatus error_allocation = error_status(0x3C);
constexpr ViStatus error_invalid_mask = error_status(0x3D);
constexpr ViStatus error_io = error_status(0x3E);
constexpr ViStatus error_operation_not_supported = error_status(0x67);
constexpr ViStatus error_user_buffer = error_status(0x71);
constexpr ViStatus error_invalid_protocol = error_status(0x79);
constexpr ViStatus error_invalid_size = error_status(0x7B);
constexpr ViStatus error_session_not_locked = error_status(0x9C);
constexpr ViStatus error_connection_lost = error_status(0xA6);
constexpr ViStatus error_no_permission = error_status(0xA8);

constexpr ViObject null_object = 0;
constexpr ViUInt32 find_buffer_bytes = 256; ///< VI_FIND_BUFLEN, also of keys and descriptions
constexpr ViUInt32 timeout_immediate = 0;
constexpr ViUInt32 timeout_infinite = 0xFFFFFFFFU;

constexpr ViAccessMode access_no_lock = 0;
constexpr ViAccessMode access_exclusive_lock = 1;
constexpr ViAccessMode access_shared_lock = 2;
constexpr ViAccessMode access_load_config = 4;

constexpr ViEventType event_service_request = 0x3FFF200BU;
constexpr ViEventType all_enabled_events = 0x3FFF7FFFU;

constexpr ViUInt16 mechanism_queue = 1;
constexpr ViUInt16 mechanism_handler = 2;
constexpr ViUInt16 mechanism_suspended_handler = 4;
constexpr ViUInt16 all_mechanisms = 0xFFFF;

constexpr ViUInt16 trigger_protocol_default = 0;
constexpr ViInt16 software_trigger = -1;

constexpr ViUInt16 read_buffer = 1;
constexpr ViUInt16 write_buffer = 2;
constexpr ViUInt16 io_in_buffer = 16;
constexpr ViUInt16 io_out_buffer = 32;
constexpr ViUInt16 every_flush_mask = 0xFF; ///< the four buffers, and the same with "discard"

constexpr ViUInt16 flush_on_access = 1;
constexpr ViUInt16 flush_when_full = 2;
constexpr ViUInt16 flush_disable = 3;
constexpr ViUInt16 io_protocol_normal = 1;

constexpr ViAttr attribute_resource_class = 0xBFFF0001U;
constexpr ViAttr attribute_resource_name = 0xBFFF0002U;
constexpr ViAttr attribute_manufacturer_name = 0xBFFF0072U;
constexpr ViAttr attribute_model_name = 0xBFFF0077U;
constexpr ViAttr attribute_interface_name = 0xBFFF00E9U;
constexpr ViAttr attribute_resource_manufacturer_name = 0xBFFF0174U;
constexpr ViAttr attribute_tcpip_address = 0xBFFF0195U;
constexpr ViAttr attribute_tcpip_host_name = 0xBFFF0196U;
constexpr ViAttr attribute_tcpip_device_name = 0xBFFF0199U;
constexpr ViAttr attribute_usb_serial_number = 0xBFFF01A0U;
constexpr ViAttr attribute_implementation_version = 0x3FFF0003U;
constexpr ViAttr attribute_lock_state = 0x3FFF0004U;
constexpr ViAttr attribute_max_queue_length = 0x3FFF0005U;
constexpr ViAttr attribute_user_data = 0x3FFF0007U;    ///< 32 bits
constexpr ViAttr attribute_user_data_64 = 0x3FFF000AU; ///< on 64-bit systems only
constexpr ViAttr attribute_send_end_enable = 0x3FFF0016U;
constexpr ViAttr attribute_term_char = 0x3FFF0018U;
constexpr ViAttr attribute_timeout = 0x3FFF001AU;
constexpr ViAttr attribute_io_protocol = 0x3FFF001CU;
constexpr ViAttr attribute_dma_allow_enable = 0x3FFF001EU;
constexpr ViAttr attribute_read_buffer_mode = 0x3FFF002AU;
constexpr ViAttr attribute_read_buffer_size = 0x3FFF002BU;
constexpr ViAttr attribute_write_buffer_mode = 0x3FFF002DU;
constexpr ViAttr attribute_write_buffer_size = 0x3FFF002EU;
constexpr ViAttr attribute_suppress_end_enable = 0x3FFF0036U;
constexpr ViAttr attribute_term_char_enable = 0x3FFF0038U;
constexpr ViAttr attribute_rm_session = 0x3FFF00C4U;
constexpr ViAttr attribute_manufacturer_id = 0x3FFF00D9U;
constexpr ViAttr attribute_model_code = 0x3FFF00DFU;
constexpr ViAttr attribute_spec_version = 0x3FFF0170U;
constexpr ViAttr attribute_interface_type = 0x3FFF0171U;
constexpr ViAttr attribute_resource_manufacturer_id = 0x3FFF0175U;
constexpr ViAttr attribute_interface_number = 0x3FFF0176U;
constexpr ViAttr attribute_trigger_id = 0x3FFF0177U;
constexpr ViAttr attribute_file_append_enable = 0x3FFF0192U;
constexpr ViAttr attribute_4882_compliant = 0x3FFF019FU;
constexpr ViAttr attribute_usb_interface_number = 0x3FFF01A1U;
constexpr ViAttr attribute_usb_protocol = 0x3FFF01A7U;
constexpr ViAttr attribute_usb_max_interrupt_size = 0x3FFF01AFU;
constexpr ViAttr attribute_tcpip_is_hislip = 0x3FFF0303U;

constexpr ViUInt16 interface_type_gpib = 1;
constexpr ViUInt16 interface_type_vxi = 2;
constexpr ViUInt16 interface_type_gpib_vxi = 3;
constexpr ViUInt16 interface_type_asrl = 4;
constexpr ViUInt16 interface_type_pxi = 5;
constexpr ViUInt16 interface_type_tcpip = 6;
constexpr ViUInt16 interface_type_usb = 7;

} // namespace visa
