// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace visa {

/// As deep may the parentheses of an expression nest; one with deeper ones is malformed.
constexpr std::size_t deepest_nesting = 64;

/// A search expression for resource names (VPP-4.3, chapter 4.2.2): "?" any character,
/// "\" the next character as it is, "[list]" and "[^list]" with ranges "a-b", "*" and "+"
/// after a character or group, "|" and "( )". The whole name must match; letter case does
/// not matter. The time to match grows with the product of both lengths, whatever the
/// expression is.
class resource_expression_t
{
public:
    /// Reads an expression, without an attribute clause; nothing when it is malformed.
    static std::optional<resource_expression_t> read(std::string_view text);

    bool matches(std::string_view name) const;

private:
    using characters_t = std::bitset<256>;
    using positions_t = std::vector<bool>; ///< places in a name that a match can have reached

    enum class kind_t : std::uint8_t { character, sequence, choice, any_number, at_least_one };

    struct node_t
    {
        kind_t kind = kind_t::sequence;
        characters_t characters;      ///< of kind_t::character
        std::vector<node_t> children; ///< of the other kinds
    };

    class reader_t;

    explicit resource_expression_t(node_t node) : root(std::move(node)) {}

    static positions_t advance(const node_t &node, std::string_view name, const positions_t &from);
    static positions_t repeat(const node_t &node, std::string_view name, positions_t reached);

    node_t root;
};

} // namespace visa
