// SPDX-License-Identifier: MIT
#pragma once

#include "visa/object_attributes.h"
#include "visa/resource_expression.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace visa {

/// What a search asks of the attributes of a resource (VPP-4.3, chapter 4.2.2):
/// `VI_ATTR_MANF_ID == 0xA17E && !(VI_ATTR_USB_INTFC_NUM > 0)`. Numbers are decimal or hexadecimal
/// and compared by == != < <= > >=; a text is in quotation marks, is a search expression itself and
/// is compared by == and !=. An attribute that a resource does not have fails every comparison.
class attribute_expression_t
{
public:
    /// Reads an expression, without the braces around it; nothing when it is malformed or names an
    /// attribute that cannot be told without opening a resource.
    static std::optional<attribute_expression_t> read(std::string_view text);

    bool holds_for(const object_attributes_t &resource) const;

private:
    enum class kind_t : std::uint8_t { comparison, negation, all_of, any_of };

    struct comparison_t;

    struct node_t
    {
        kind_t kind = kind_t::comparison;
        ViAttr attribute = 0; ///< this and the following: of kind_t::comparison
        const comparison_t *comparison = nullptr;
        std::uint64_t number = 0;
        std::optional<resource_expression_t> text; ///< in place of the number
        std::vector<node_t> children;              ///< of the other kinds
    };

    class reader_t;

    explicit attribute_expression_t(node_t node) : root(std::move(node)) {}

    static bool holds(const node_t &node, const object_attributes_t &resource);
    static bool compare(const node_t &node, const object_attributes_t &resource);

    node_t root;
};

} // namespace visa
