// SPDX-License-Identifier: MIT
#pragma once

#include "visa/resource_name.h"
#include "visa/visa_types.h"

#include <cstdint>
#include <string>

namespace visa {

/// What the attributes of a session say and keep (VPP-4.3, chapters 3.2 and 5). Plain values: the
/// library that owns the session keeps what it shows true.
struct object_attributes_t
{
    enum class kind_t : std::uint8_t { manager, usb, tcpip };

    kind_t kind = kind_t::manager;
    ViSession manager = null_object; ///< through which it was opened
    std::string name_text;           ///< VI_ATTR_RSRC_NAME
    resource_name_t name;
    std::string address;       ///< TCPIP only
    std::string library_maker; ///< VI_ATTR_RSRC_MANF_NAME
    ViUInt32 library_version = 0;
    std::string instrument_maker; ///< USB only
    std::string instrument_model; ///< USB only
    ViAccessMode lock_state = access_no_lock;

    ViUInt32 timeout_ms = 2000;
    ViUInt8 term_char = '\n';
    bool term_char_enabled = false;
    bool send_end_enabled = true;
    bool dma_allowed = false;
    bool file_append_enabled = false;
    ViUInt16 read_buffer_mode = flush_disable;
    ViUInt16 write_buffer_mode = flush_when_full;
    ViUInt32 read_buffer_size = 4096;     ///< bytes
    ViUInt32 write_buffer_size = 4096;    ///< bytes
    ViUInt32 max_queue_length = 50;       ///< events
    ViUInt16 usb_max_interrupt_size = 64; ///< bytes
    ViAttrState user_data = 0;
};

/// Stores an attribute as viGetAttribute does: as many bytes as the attribute's own type has, texts
/// with their zero byte (at most 256 bytes).
ViStatus get_attribute(const object_attributes_t &object, ViAttr attribute, void *value);

/// Sets an attribute as viSetAttribute does. Of the value only as many bits count as the
/// attribute's type has: callers with 32-bit headers leave the upper half undefined.
ViStatus set_attribute(object_attributes_t &object, ViAttr attribute, ViAttrState value);

} // namespace visa
