// SPDX-License-Identifier: MIT
#include "sim/visa/visa_attributes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace sim::visa {

namespace {

using bus_t = resource_name_t::bus_t;

constexpr ViUInt32 spec_version = 0x00500800; // 5.8.0
constexpr ViUInt32 implementation_version = 0x00100000;
constexpr const char *maker = "Corvane simulated instruments";

// A number of one, two or four bytes, or a text.
struct value_t
{
    std::size_t number_bytes; ///< 0: a text
    ViUInt32 number;
    std::string text;
};

template <typename number_t>
value_t number(number_t value)
{
    return {sizeof value, value, {}};
}

value_t text(std::string value)
{
    return {0, 0, std::move(value)};
}

value_t flag(bool value)
{
    return number(ViUInt16{value});
}

// Which sessions have an attribute.
enum class scope_t : std::uint8_t { every_bus, usb, tcpip };

struct attribute_t
{
    ViAttr number;
    scope_t scope;
    value_t (*get)(const visa_session_t &session);
    ViStatus (*set)(visa_session_t &session, ViAttrState value); ///< null: read only
};

ViStatus set_flag(bool &flag, ViAttrState value)
{
    if (value > 1)
        return error_attribute_state_not_supported;
    flag = value == 1;
    return success;
}

ViStatus set_term_char(visa_session_t &session, ViAttrState value)
{
    if (value > 0xFF)
        return error_attribute_state_not_supported;
    session.term_char = static_cast<ViUInt8>(value);
    return success;
}

ViStatus set_term_char_enable(visa_session_t &session, ViAttrState value)
{
    return set_flag(session.term_char_enabled, value);
}

ViStatus set_send_end_enable(visa_session_t &session, ViAttrState value)
{
    return set_flag(session.send_end_enabled, value);
}

ViStatus set_timeout(visa_session_t &session, ViAttrState value)
{
    session.timeout_ms = value;
    return success;
}

ViStatus set_user_data(visa_session_t &session, ViAttrState value)
{
    session.user_data = value;
    return success;
}

value_t interface_name(const visa_session_t &session)
{
    const char *const bus = session.name.bus == bus_t::usb ? "USB" : "TCPIP";
    return text(bus + std::to_string(session.name.board));
}

value_t interface_type(const visa_session_t &session)
{
    return number(session.name.bus == bus_t::usb ? interface_type_usb : interface_type_tcpip);
}

const std::vector<attribute_t> &attributes()
{
    using session_t = visa_session_t;
    static const std::vector<attribute_t> rows{
        {attribute_timeout, scope_t::every_bus,
         [](const session_t &s) { return number(s.timeout_ms); }, set_timeout},
        {attribute_term_char, scope_t::every_bus,
         [](const session_t &s) { return number(s.term_char); }, set_term_char},
        {attribute_term_char_enable, scope_t::every_bus,
         [](const session_t &s) { return flag(s.term_char_enabled); }, set_term_char_enable},
        {attribute_send_end_enable, scope_t::every_bus,
         [](const session_t &s) { return flag(s.send_end_enabled); }, set_send_end_enable},
        {attribute_user_data, scope_t::every_bus,
         [](const session_t &s) { return number(s.user_data); }, set_user_data},
        {attribute_resource_name, scope_t::every_bus,
         [](const session_t &s) { return text(s.name_text); }, nullptr},
        {attribute_resource_class, scope_t::every_bus,
         [](const session_t &) { return text("INSTR"); }, nullptr},
        {attribute_resource_manufacturer_name, scope_t::every_bus,
         [](const session_t &) { return text(maker); }, nullptr},
        {attribute_spec_version, scope_t::every_bus,
         [](const session_t &) { return number(spec_version); }, nullptr},
        {attribute_implementation_version, scope_t::every_bus,
         [](const session_t &) { return number(implementation_version); }, nullptr},
        {attribute_lock_state, scope_t::every_bus,
         [](const session_t &) { return number(ViUInt32{0}); }, nullptr},
        {attribute_rm_session, scope_t::every_bus,
         [](const session_t &s) { return number(s.resource_manager); }, nullptr},
        {attribute_interface_name, scope_t::every_bus, interface_name, nullptr},
        {attribute_interface_type, scope_t::every_bus, interface_type, nullptr},
        {attribute_interface_number, scope_t::every_bus,
         [](const session_t &s) { return number(s.name.board); }, nullptr},
        {attribute_manufacturer_id, scope_t::usb,
         [](const session_t &s) { return number(s.name.manufacturer_id); }, nullptr},
        {attribute_model_code, scope_t::usb,
         [](const session_t &s) { return number(s.name.model_code); }, nullptr},
        {attribute_usb_serial_number, scope_t::usb,
         [](const session_t &s) { return text(s.name.serial_number); }, nullptr},
        {attribute_tcpip_address, scope_t::tcpip,
         [](const session_t &s) { return text(s.name.host); }, nullptr},
    };
    return rows;
}

bool is_in_scope(scope_t scope, bus_t bus)
{
    return scope == scope_t::every_bus || (scope == scope_t::usb) == (bus == bus_t::usb);
}

const attribute_t *find_attribute(const visa_session_t &session, ViAttr number)
{
    const auto &rows = attributes();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const attribute_t &candidate) {
        return candidate.number == number && is_in_scope(candidate.scope, session.name.bus);
    });
    return row == rows.end() ? nullptr : &*row;
}

template <typename number_t>
void store_number(void *target, ViUInt32 value)
{
    const auto number = static_cast<number_t>(value);
    std::memcpy(target, &number, sizeof number);
}

void store(void *target, const value_t &value)
{
    switch (value.number_bytes) {
    case sizeof(ViUInt8):
        return store_number<ViUInt8>(target, value.number);
    case sizeof(ViUInt16):
        return store_number<ViUInt16>(target, value.number);
    case sizeof(ViUInt32):
        return store_number<ViUInt32>(target, value.number);
    default:
        std::memcpy(target, value.text.c_str(), value.text.size() + 1);
    }
}

} // namespace

ViStatus get_attribute(const visa_session_t &session, ViAttr attribute, void *value)
{
    const attribute_t *row = find_attribute(session, attribute);
    if (row == nullptr)
        return error_attribute_not_supported;
    store(value, row->get(session));
    return success;
}

ViStatus set_attribute(visa_session_t &session, ViAttr attribute, ViAttrState value)
{
    const attribute_t *row = find_attribute(session, attribute);
    if (row == nullptr)
        return error_attribute_not_supported;
    return row->set == nullptr ? error_attribute_read_only : row->set(session, value);
}

ViStatus get_manager_attribute(ViAttr attribute, void *value)
{
    switch (attribute) {
    case attribute_resource_class:
        store(value, text("RSRC_MANAGER"));
        return success;
    case attribute_resource_manufacturer_name:
        store(value, text(maker));
        return success;
    case attribute_spec_version:
        store(value, number(spec_version));
        return success;
    case attribute_implementation_version:
        store(value, number(implementation_version));
        return success;
    default:
        return error_attribute_not_supported;
    }
}

} // namespace sim::visa
