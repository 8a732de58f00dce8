// SPDX-License-Identifier: MIT
#include "visa/resource_search.h"

#include <algorithm>
#include <cstddef>

namespace visa {

namespace {

// Where the attribute clause begins; the end of the text when there is none. In a list, and behind
// a backslash, a brace stands for itself.
std::size_t clause_place(std::string_view text)
{
    bool in_list = false;
    std::size_t place = 0;
    for (; place < text.size() && (in_list || text[place] != '{'); ++place) {
        if (text[place] == '\\')
            ++place;
        else if (text[place] == (in_list ? ']' : '['))
            in_list = !in_list;
    }
    return std::min(place, text.size());
}

std::string_view without_blanks_behind(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

} // namespace

std::optional<resource_search_t> resource_search_t::read(std::string_view text)
{
    const std::size_t place = clause_place(text);
    if (place == text.size()) {
        auto name = resource_expression_t::read(text);
        return name ? std::optional(resource_search_t(std::move(*name))) : std::nullopt;
    }
    const std::string_view clause = without_blanks_behind(text.substr(place + 1));
    auto name = resource_expression_t::read(without_blanks_behind(text.substr(0, place)));
    if (!name || clause.empty() || clause.back() != '}')
        return std::nullopt;
    resource_search_t search(std::move(*name));
    search.attributes = attribute_expression_t::read(clause.substr(0, clause.size() - 1));
    return search.attributes ? std::optional(std::move(search)) : std::nullopt;
}

bool resource_search_t::finds(std::string_view name,
                              const std::function<object_attributes_t()> &attributes_of_it) const
{
    return names.matches(name) && (!attributes || attributes->holds_for(attributes_of_it()));
}

} // namespace visa
