// SPDX-License-Identifier: MIT
#include "sim/instrument/product_catalog.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::array<product_t, 5> products{{
    {21, "TMX5021", "AB", {{{1, 6}}}, {}},
    {22, "TMX5022", "AB", {{{1, 12}}}, {}},
    {24, "TMX5024", "AB", {{{1, 24}}}, {}},
    {42, "TMX5042", "ABCD", {{{1, 6}}}, {{{7, 12}}}},
    {44, "TMX5044", "ABCD", {{{1, 6}, {13, 18}}}, {{{7, 12}, {19, 24}}}},
}};

} // namespace

bool product_t::reaches(char vna_port, int test_port) const
{
    const bool left_side = vna_port == 'A' || vna_port == 'B';
    const auto &reach = left_side ? reach_of_ab : reach_of_cd;
    return test_port > 0 && std::any_of(reach.begin(), reach.end(), [&](const port_range_t &range) {
               return test_port >= range.first && test_port <= range.last;
           });
}

const product_t *find_product(int id)
{
    const auto *const product =
        std::find_if(products.begin(), products.end(),
                     [id](const product_t &candidate) { return candidate.id == id; });
    return product == products.end() ? nullptr : product;
}

std::string product_ids()
{
    std::string ids;
    for (const product_t &product : products)
        ids += (ids.empty() ? "" : ", ") + std::to_string(product.id);
    return ids;
}

} // namespace sim
