// SPDX-License-Identifier: MIT
#include "visa/attribute_expression.h"

#include "visa/attribute_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace visa {

namespace {

constexpr std::string_view word_characters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789";

// The attributes that belong to a resource and not to a session with it.
constexpr std::array<std::pair<std::string_view, ViAttr>, 16> names{
    {{"VI_ATTR_RSRC_CLASS", attribute_resource_class},
     {"VI_ATTR_RSRC_NAME", attribute_resource_name},
     {"VI_ATTR_INTF_TYPE", attribute_interface_type},
     {"VI_ATTR_INTF_NUM", attribute_interface_number},
     {"VI_ATTR_INTF_INST_NAME", attribute_interface_name},
     {"VI_ATTR_MANF_ID", attribute_manufacturer_id},
     {"VI_ATTR_MANF_NAME", attribute_manufacturer_name},
     {"VI_ATTR_MODEL_CODE", attribute_model_code},
     {"VI_ATTR_MODEL_NAME", attribute_model_name},
     {"VI_ATTR_4882_COMPLIANT", attribute_4882_compliant},
     {"VI_ATTR_USB_SERIAL_NUM", attribute_usb_serial_number},
     {"VI_ATTR_USB_INTFC_NUM", attribute_usb_interface_number},
     {"VI_ATTR_USB_PROTOCOL", attribute_usb_protocol},
     {"VI_ATTR_TCPIP_ADDR", attribute_tcpip_address},
     {"VI_ATTR_TCPIP_HOSTNAME", attribute_tcpip_host_name},
     {"VI_ATTR_TCPIP_DEVICE_NAME", attribute_tcpip_device_name}}};

bool is_text(ViAttr attribute)
{
    return (attribute & 0x80000000U) != 0;
}

} // namespace

struct attribute_expression_t::comparison_t
{
    std::string_view symbol;
    bool of_texts_too;
    bool (*holds)(std::uint64_t value, std::uint64_t limit);
};

// Reads by recursive descent: any_of -> all_of -> term -> comparison.
class attribute_expression_t::reader_t
{
public:
    explicit reader_t(std::string_view text) : rest(text) {}

    std::optional<node_t> read_all()
    {
        auto node = read_any_of();
        skip_blanks();
        return node && rest.empty() ? node : std::nullopt;
    }

private:
    void skip_blanks() { rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size())); }

    bool take(std::string_view symbol)
    {
        skip_blanks();
        if (rest.substr(0, symbol.size()) != symbol)
            return false;
        rest.remove_prefix(symbol.size());
        return true;
    }

    std::optional<node_t> read_any_of()
    {
        return read_joined(kind_t::any_of, "||", [this] { return read_all_of(); });
    }

    std::optional<node_t> read_all_of()
    {
        return read_joined(kind_t::all_of, "&&", [this] { return read_term(); });
    }

    template <typename read_part_t>
    std::optional<node_t> read_joined(kind_t kind, std::string_view symbol, read_part_t read_part)
    {
        node_t joined;
        joined.kind = kind;
        do {
            auto part = read_part();
            if (!part)
                return std::nullopt;
            joined.children.push_back(std::move(*part));
        } while (take(symbol));
        return joined;
    }

    std::optional<node_t> read_term()
    {
        if (++nesting > deepest_nesting)
            return std::nullopt;
        auto term = take("!") ? read_negation() : take("(") ? read_group() : read_comparison();
        --nesting;
        return term;
    }

    std::optional<node_t> read_negation()
    {
        auto negated = read_term();
        if (!negated)
            return std::nullopt;
        node_t node;
        node.kind = kind_t::negation;
        node.children.push_back(std::move(*negated));
        return node;
    }

    std::optional<node_t> read_group()
    {
        auto group = read_any_of();
        return group && take(")") ? group : std::nullopt;
    }

    std::optional<node_t> read_comparison()
    {
        node_t node;
        const bool well_formed = read_attribute(node) && read_operator(node) &&
                                 (is_text(node.attribute) ? read_text(node) : read_number(node));
        return well_formed ? std::optional<node_t>(std::move(node)) : std::nullopt;
    }

    bool read_attribute(node_t &node)
    {
        skip_blanks();
        const std::string_view name =
            rest.substr(0, std::min(rest.find_first_not_of(word_characters), rest.size()));
        const auto *const row = std::find_if(
            names.begin(), names.end(), [name](const auto &known) { return known.first == name; });
        if (row == names.end())
            return false;
        node.attribute = row->second;
        return take(name);
    }

    bool read_operator(node_t &node)
    {
        // A symbol that another begins with stands behind it.
        static constexpr std::array<comparison_t, 6> comparisons{
            {{"==", true, [](std::uint64_t value, std::uint64_t limit) { return value == limit; }},
             {"!=", true, [](std::uint64_t value, std::uint64_t limit) { return value != limit; }},
             {"<=", false, [](std::uint64_t value, std::uint64_t limit) { return value <= limit; }},
             {">=", false, [](std::uint64_t value, std::uint64_t limit) { return value >= limit; }},
             {"<", false, [](std::uint64_t value, std::uint64_t limit) { return value < limit; }},
             {">", false, [](std::uint64_t value, std::uint64_t limit) { return value > limit; }}}};
        const auto *const found =
            std::find_if(comparisons.begin(), comparisons.end(),
                         [this](const comparison_t &known) { return take(known.symbol); });
        if (found == comparisons.end())
            return false;
        node.comparison = found;
        return true;
    }

    bool read_number(node_t &node)
    {
        const int base = take("0x") || take("0X") ? 16 : 10;
        const auto end = std::from_chars(rest.data(), rest.data() + rest.size(), node.number, base);
        rest.remove_prefix(static_cast<std::size_t>(end.ptr - rest.data()));
        return end.ec == std::errc();
    }

    bool read_text(node_t &node)
    {
        if (!node.comparison->of_texts_too || !take("\""))
            return false;
        const std::size_t end = rest.find('"');
        if (end == std::string_view::npos)
            return false;
        node.text = resource_expression_t::read(rest.substr(0, end));
        rest.remove_prefix(end + 1);
        return node.text.has_value();
    }

    std::string_view rest;
    std::size_t nesting = 0;
};

std::optional<attribute_expression_t> attribute_expression_t::read(std::string_view text)
{
    auto node = reader_t(text).read_all();
    if (!node)
        return std::nullopt;
    return attribute_expression_t(std::move(*node));
}

bool attribute_expression_t::holds_for(const object_attributes_t &resource) const
{
    return holds(root, resource);
}

bool attribute_expression_t::holds(const node_t &node, const object_attributes_t &resource)
{
    const auto child_holds = [&resource](const node_t &child) { return holds(child, resource); };
    const auto &children = node.children;
    switch (node.kind) {
    case kind_t::negation:
        return !child_holds(children.front());
    case kind_t::all_of:
        return std::all_of(children.begin(), children.end(), child_holds);
    case kind_t::any_of:
        return std::any_of(children.begin(), children.end(), child_holds);
    case kind_t::comparison:
        break;
    }
    return compare(node, resource);
}

bool attribute_expression_t::compare(const node_t &node, const object_attributes_t &resource)
{
    const attribute_t *const attribute = find_attribute(resource, node.attribute);
    if (attribute == nullptr)
        return false;
    const attribute_value_t value = attribute->get(resource);
    if (!node.text)
        return node.comparison->holds(value.number, node.number);
    // As if both were numbers: 1 for a text that matches.
    return node.comparison->holds(node.text->matches(value.text) ? 1 : 0, 1);
}

} // namespace visa
