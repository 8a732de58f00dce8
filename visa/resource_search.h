// SPDX-License-Identifier: MIT
#pragma once

#include "visa/attribute_expression.h"
#include "visa/object_attributes.h"
#include "visa/resource_expression.h"

#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace visa {

/// What viFindRsrc looks for: an expression for the names of resources and, in braces behind it,
/// one for their attributes: `USB?*{VI_ATTR_MANF_ID == 0xA17E}`.
class resource_search_t
{
public:
    /// Reads a search; nothing when it is malformed.
    static std::optional<resource_search_t> read(std::string_view text);

    /// Whether it finds a resource of this name; its attributes are asked for only when they
    /// matter.
    bool finds(std::string_view name,
               const std::function<object_attributes_t()> &attributes_of_it) const;

private:
    explicit resource_search_t(resource_expression_t expression) : names(std::move(expression)) {}

    resource_expression_t names;
    std::optional<attribute_expression_t> attributes;
};

} // namespace visa
