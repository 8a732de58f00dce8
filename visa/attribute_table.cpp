// SPDX-License-Identifier: MIT
#include "visa/attribute_table.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

namespace visa {

namespace {

using object_t = object_attributes_t;
using kind_t = object_t::kind_t;
using scope_t = attribute_t::scope_t;
using value_t = attribute_value_t;

constexpr ViUInt32 spec_version = 0x00500800; // 5.8.0
constexpr ViUInt16 no_vendor_id = 0;
constexpr ViInt16 usb488_protocol = 1;

template <typename number_t>
value_t number(number_t value)
{
    return {sizeof value, static_cast<std::uint64_t>(value), {}};
}

value_t text(std::string value)
{
    return {0, 0, std::move(value)};
}

value_t flag(bool value)
{
    return number(ViUInt16{value});
}

using rows_t = std::vector<attribute_t>;

ViStatus no_such_state()
{
    return error_attribute_state_not_supported;
}

template <auto field>
ViStatus set_any(object_t &object, ViAttrState value)
{
    object.*field = static_cast<std::decay_t<decltype(object.*field)>>(value);
    return success;
}

template <bool object_t::*field>
ViStatus set_flag(object_t &object, ViAttrState value)
{
    const auto state = static_cast<ViUInt16>(value);
    if (state > 1)
        return no_such_state();
    object.*field = state == 1;
    return success;
}

// The one state that there is.
template <ViUInt16 state>
ViStatus set_only(object_t & /*object*/, ViAttrState value)
{
    return static_cast<ViUInt16>(value) == state ? success : no_such_state();
}

template <ViUInt16 object_t::*field, ViUInt16 other_mode>
ViStatus set_buffer_mode(object_t &object, ViAttrState value)
{
    const auto mode = static_cast<ViUInt16>(value);
    if (mode != flush_on_access && mode != other_mode)
        return no_such_state();
    object.*field = mode;
    return success;
}

ViStatus set_max_queue_length(object_t &object, ViAttrState value)
{
    const auto length = static_cast<ViUInt32>(value);
    if (length == 0)
        return no_such_state();
    object.max_queue_length = length;
    return success;
}

ViStatus set_user_data_32(object_t &object, ViAttrState value)
{
    object.user_data = static_cast<ViUInt32>(value);
    return success;
}

value_t resource_class(const object_t &object)
{
    return text(object.kind == kind_t::manager ? "RSRC_MANAGER" : "INSTR");
}

value_t interface_name(const object_t &object)
{
    const char *const bus = object.kind == kind_t::usb ? "USB" : "TCPIP";
    return text(bus + std::to_string(object.name.board));
}

// A host that is given by its address has no name that would be known.
value_t host_name(const object_t &object)
{
    const std::string &host = object.name.host;
    const bool is_address = host.find_first_not_of("0123456789.") == std::string::npos;
    return text(is_address ? std::string() : host);
}

const rows_t &common_rows()
{
    static const rows_t rows
    {
        {attribute_resource_class, scope_t::every_object, resource_class, nullptr},
            {attribute_resource_name, scope_t::every_object,
             [](const object_t &o) { return text(o.name_text); }, nullptr},
            {attribute_resource_manufacturer_name, scope_t::every_object,
             [](const object_t &o) { return text(o.library_maker); }, nullptr},
            {attribute_resource_manufacturer_id, scope_t::every_object,
             [](const object_t &) { return number(no_vendor_id); }, nullptr},
            {attribute_spec_version, scope_t::every_object,
             [](const object_t &) { return number(spec_version); }, nullptr},
            {attribute_implementation_version, scope_t::every_object,
             [](const object_t &o) { return number(o.library_version); }, nullptr},
            {attribute_lock_state, scope_t::every_object,
             [](const object_t &o) { return number(o.lock_state); }, nullptr},
            {attribute_rm_session, scope_t::every_object,
             [](const object_t &o) { return number(o.manager); }, nullptr},
            {attribute_max_queue_length, scope_t::every_object,
             [](const object_t &o) { return number(o.max_queue_length); }, set_max_queue_length},
            {attribute_user_data, scope_t::every_object,
             [](const object_t &o) { return number(static_cast<ViUInt32>(o.user_data)); },
             set_user_data_32},
#if UINTPTR_MAX > UINT32_MAX
            {attribute_user_data_64, scope_t::every_object,
             [](const object_t &o) { return number(o.user_data); }, set_any<&object_t::user_data>},
#endif
    };
    return rows;
}

const rows_t &transfer_rows()
{
    static const rows_t rows{
        {attribute_timeout, scope_t::instruments,
         [](const object_t &o) { return number(o.timeout_ms); }, set_any<&object_t::timeout_ms>},
        {attribute_term_char, scope_t::instruments,
         [](const object_t &o) { return number(o.term_char); }, set_any<&object_t::term_char>},
        {attribute_term_char_enable, scope_t::instruments,
         [](const object_t &o) { return flag(o.term_char_enabled); },
         set_flag<&object_t::term_char_enabled>},
        {attribute_send_end_enable, scope_t::instruments,
         [](const object_t &o) { return flag(o.send_end_enabled); },
         set_flag<&object_t::send_end_enabled>},
        {attribute_suppress_end_enable, scope_t::instruments,
         [](const object_t &) { return flag(false); }, set_only<0>},
        {attribute_io_protocol, scope_t::instruments,
         [](const object_t &) { return number(io_protocol_normal); }, set_only<io_protocol_normal>},
        {attribute_dma_allow_enable, scope_t::instruments,
         [](const object_t &o) { return flag(o.dma_allowed); }, set_flag<&object_t::dma_allowed>},
        {attribute_file_append_enable, scope_t::instruments,
         [](const object_t &o) { return flag(o.file_append_enabled); },
         set_flag<&object_t::file_append_enabled>},
        {attribute_read_buffer_mode, scope_t::instruments,
         [](const object_t &o) { return number(o.read_buffer_mode); },
         set_buffer_mode<&object_t::read_buffer_mode, flush_disable>},
        {attribute_write_buffer_mode, scope_t::instruments,
         [](const object_t &o) { return number(o.write_buffer_mode); },
         set_buffer_mode<&object_t::write_buffer_mode, flush_when_full>},
        {attribute_read_buffer_size, scope_t::instruments,
         [](const object_t &o) { return number(o.read_buffer_size); }, nullptr},
        {attribute_write_buffer_size, scope_t::instruments,
         [](const object_t &o) { return number(o.write_buffer_size); }, nullptr},
    };
    return rows;
}

const rows_t &bus_rows()
{
    static const rows_t rows{
        {attribute_interface_name, scope_t::instruments, interface_name, nullptr},
        {attribute_interface_type, scope_t::instruments,
         [](const object_t &o) { return number(o.name.interface_type); }, nullptr},
        {attribute_interface_number, scope_t::instruments,
         [](const object_t &o) { return number(o.name.board); }, nullptr},
        {attribute_manufacturer_id, scope_t::usb,
         [](const object_t &o) { return number(o.name.manufacturer_id); }, nullptr},
        {attribute_model_code, scope_t::usb,
         [](const object_t &o) { return number(o.name.model_code); }, nullptr},
        {attribute_manufacturer_name, scope_t::usb,
         [](const object_t &o) { return text(o.instrument_maker); }, nullptr},
        {attribute_model_name, scope_t::usb,
         [](const object_t &o) { return text(o.instrument_model); }, nullptr},
        {attribute_usb_serial_number, scope_t::usb,
         [](const object_t &o) { return text(o.name.serial_number); }, nullptr},
        {attribute_usb_interface_number, scope_t::usb,
         [](const object_t &o) { return number(static_cast<ViInt16>(o.name.usb_interface)); },
         nullptr},
        {attribute_usb_protocol, scope_t::usb,
         [](const object_t &) { return number(usb488_protocol); }, nullptr},
        {attribute_usb_max_interrupt_size, scope_t::usb,
         [](const object_t &o) { return number(o.usb_max_interrupt_size); },
         set_any<&object_t::usb_max_interrupt_size>},
        {attribute_4882_compliant, scope_t::usb, [](const object_t &) { return flag(true); },
         nullptr},
        {attribute_tcpip_address, scope_t::tcpip, [](const object_t &o) { return text(o.address); },
         nullptr},
        {attribute_tcpip_host_name, scope_t::tcpip, host_name, nullptr},
        {attribute_tcpip_device_name, scope_t::tcpip,
         [](const object_t &o) { return text(o.name.device_name); }, nullptr},
        {attribute_trigger_id, scope_t::tcpip,
         [](const object_t &) { return number(software_trigger); },
         set_only<static_cast<ViUInt16>(software_trigger)>},
        {attribute_tcpip_is_hislip, scope_t::tcpip, [](const object_t &) { return flag(false); },
         nullptr},
    };
    return rows;
}

bool is_in_scope(scope_t scope, kind_t kind)
{
    switch (scope) {
    case scope_t::every_object:
        return true;
    case scope_t::instruments:
        return kind != kind_t::manager;
    case scope_t::usb:
        return kind == kind_t::usb;
    case scope_t::tcpip:
        break;
    }
    return kind == kind_t::tcpip;
}

} // namespace

const attribute_t *find_attribute(const object_t &object, ViAttr number)
{
    for (const rows_t *rows : {&common_rows(), &transfer_rows(), &bus_rows()}) {
        const auto row =
            std::find_if(rows->begin(), rows->end(), [&](const attribute_t &candidate) {
                return candidate.number == number && is_in_scope(candidate.scope, object.kind);
            });
        if (row != rows->end())
            return &*row;
    }
    return nullptr;
}

} // namespace visa
