// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace visa {

/// A number of one, two, four or eight bytes, or a text.
struct attribute_value_t
{
    std::size_t number_bytes; ///< 0: a text
    std::uint64_t number;
    std::string text;
};

/// How an attribute is read and set (VPP-4.3, chapters 3.2 and 5).
struct attribute_t
{
    /// Which objects have it.
    enum class scope_t : std::uint8_t { every_object, instruments, usb, tcpip };

    ViAttr number;
    scope_t scope;
    attribute_value_t (*get)(const object_attributes_t &object);
    ViStatus (*set)(object_attributes_t &object, ViAttrState value); ///< null: read only
};

/// An attribute that the object has; null for none of this number.
const attribute_t *find_attribute(const object_attributes_t &object, ViAttr number);

} // namespace visa
