// SPDX-License-Identifier: MIT
#include "visa/resource_expression.h"

#include <utility>

namespace visa {

namespace {

std::size_t index_of(char character)
{
    return static_cast<unsigned char>(character);
}

} // namespace

// Reads by recursive descent: choice -> sequence -> repeated -> single.
class resource_expression_t::reader_t
{
public:
    explicit reader_t(std::string_view text) : rest(text) {}

    std::optional<node_t> read_all()
    {
        auto node = read_choice();
        return node && rest.empty() ? node : std::nullopt;
    }

private:
    bool take(char character)
    {
        if (rest.empty() || rest.front() != character)
            return false;
        rest.remove_prefix(1);
        return true;
    }

    std::optional<char> take_any()
    {
        if (rest.empty())
            return std::nullopt;
        const char character = rest.front();
        rest.remove_prefix(1);
        return character;
    }

    std::optional<node_t> read_choice()
    {
        node_t choice;
        choice.kind = kind_t::choice;
        do {
            auto sequence = read_sequence();
            if (!sequence)
                return std::nullopt;
            choice.children.push_back(std::move(*sequence));
        } while (take('|'));
        return choice;
    }

    std::optional<node_t> read_sequence()
    {
        node_t sequence;
        while (!rest.empty() && rest.front() != '|' && rest.front() != ')') {
            auto single = read_repeated();
            if (!single)
                return std::nullopt;
            sequence.children.push_back(std::move(*single));
        }
        if (sequence.children.empty())
            return std::nullopt;
        return sequence;
    }

    std::optional<node_t> read_repeated()
    {
        auto single = read_single();
        const bool any_number = single && take('*');
        if (!single || (!any_number && !take('+')))
            return single;
        node_t repeated;
        repeated.kind = any_number ? kind_t::any_number : kind_t::at_least_one;
        repeated.children.push_back(std::move(*single));
        return repeated;
    }

    std::optional<node_t> read_single()
    {
        const auto character = take_any();
        if (!character || std::string_view("*+]{}").find(*character) != std::string_view::npos)
            return std::nullopt;
        switch (*character) {
        case '(':
            return read_group();
        case '[':
            return read_list();
        case '?':
            return one_of(characters_t().set());
        case '\\':
            return read_escaped();
        default:
            return one_of(characters_t().set(index_of(*character)));
        }
    }

    std::optional<node_t> read_group()
    {
        if (++nesting > deepest_nesting)
            return std::nullopt;
        auto group = read_choice();
        --nesting;
        return group && take(')') ? group : std::nullopt;
    }

    std::optional<node_t> read_escaped()
    {
        const auto character = take_any();
        if (!character)
            return std::nullopt;
        return one_of(characters_t().set(index_of(*character)));
    }

    std::optional<node_t> read_list()
    {
        const bool excluded = take('^');
        characters_t characters;
        while (!take(']')) {
            const auto first = take_list_character();
            if (!first)
                return std::nullopt;
            auto last = first;
            if (rest.size() > 1 && rest[0] == '-' && rest[1] != ']') {
                rest.remove_prefix(1);
                last = take_list_character();
            }
            if (!last || index_of(*last) < index_of(*first))
                return std::nullopt;
            for (std::size_t index = index_of(*first); index <= index_of(*last); ++index)
                characters.set(index);
        }
        if (characters.none())
            return std::nullopt;
        return one_of(characters, excluded);
    }

    std::optional<char> take_list_character()
    {
        take('\\');
        return take_any();
    }

    // A letter stands for itself in both cases.
    static node_t one_of(characters_t characters, bool excluded = false)
    {
        for (std::size_t capital = index_of('A'); capital <= index_of('Z'); ++capital) {
            const std::size_t small = capital - index_of('A') + index_of('a');
            const bool is_in = characters.test(capital) || characters.test(small);
            characters.set(capital, is_in).set(small, is_in);
        }
        node_t node;
        node.kind = kind_t::character;
        node.characters = excluded ? ~characters : characters;
        return node;
    }

    std::string_view rest;
    std::size_t nesting = 0;
};

std::optional<resource_expression_t> resource_expression_t::read(std::string_view text)
{
    auto node = reader_t(text).read_all();
    if (!node)
        return std::nullopt;
    return resource_expression_t(std::move(*node));
}

bool resource_expression_t::matches(std::string_view name) const
{
    positions_t start(name.size() + 1, false);
    start.front() = true;
    return advance(root, name, start).back();
}

resource_expression_t::positions_t
resource_expression_t::advance(const node_t &node, std::string_view name, const positions_t &from)
{
    positions_t reached(from.size(), false);
    switch (node.kind) {
    case kind_t::character:
        for (std::size_t place = 0; place < name.size(); ++place)
            reached[place + 1] = from[place] && node.characters.test(index_of(name[place]));
        return reached;
    case kind_t::sequence:
        reached = from;
        for (const node_t &child : node.children)
            reached = advance(child, name, reached);
        return reached;
    case kind_t::choice:
        for (const node_t &child : node.children) {
            const positions_t of_child = advance(child, name, from);
            for (std::size_t place = 0; place < reached.size(); ++place)
                reached[place] = reached[place] || of_child[place];
        }
        return reached;
    case kind_t::any_number:
        return repeat(node.children.front(), name, from);
    case kind_t::at_least_one:
        break;
    }
    return repeat(node.children.front(), name, advance(node.children.front(), name, from));
}

resource_expression_t::positions_t
resource_expression_t::repeat(const node_t &node, std::string_view name, positions_t reached)
{
    positions_t latest = reached;
    for (bool grown = true; grown;) {
        grown = false;
        latest = advance(node, name, latest);
        for (std::size_t place = 0; place < reached.size(); ++place) {
            if (latest[place] && !reached[place]) {
                reached[place] = true;
                grown = true;
            }
        }
    }
    return reached;
}

} // namespace visa
