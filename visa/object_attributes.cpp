// SPDX-License-Identifier: MIT
#include "visa/object_attributes.h"

#include "visa/attribute_table.h"

#include <cstddef>
#include <cstring>
#include <string>

namespace visa {

namespace {

template <typename number_t>
void store_number(void *target, std::uint64_t value)
{
    const auto number = static_cast<number_t>(value);
    std::memcpy(target, &number, sizeof number);
}

void store(void *target, const attribute_value_t &value)
{
    switch (value.number_bytes) {
    case sizeof(ViUInt8):
        return store_number<ViUInt8>(target, value.number);
    case sizeof(ViUInt16):
        return store_number<ViUInt16>(target, value.number);
    case sizeof(ViUInt32):
        return store_number<ViUInt32>(target, value.number);
    case sizeof(std::uint64_t):
        return store_number<std::uint64_t>(target, value.number);
    default:
        break;
    }
    const std::string fitting = value.text.substr(0, find_buffer_bytes - 1);
    std::memcpy(target, fitting.c_str(), fitting.size() + 1);
}

} // namespace

ViStatus get_attribute(const object_attributes_t &object, ViAttr attribute, void *value)
{
    const attribute_t *row = find_attribute(object, attribute);
    if (row == nullptr)
        return error_attribute_not_supported;
    store(value, row->get(object));
    return success;
}

ViStatus set_attribute(object_attributes_t &object, ViAttr attribute, ViAttrState value)
{
    const attribute_t *row = find_attribute(object, attribute);
    if (row == nullptr)
        return error_attribute_not_supported;
    return row->set == nullptr ? error_attribute_read_only : row->set(object, value);
}

} // namespace visa
