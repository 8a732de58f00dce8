// SPDX-License-Identifier: MIT
#include "sim/lan/link_table.h"

#include "sim/lan/vxi11_service.h"

#include <utility>

namespace sim::lan {

std::uint32_t link_table_t::add(vxi11_service_t &owner)
{
    if (owners.size() >= most_links)
        return 0;
    do
        last = last % INT32_MAX + 1;
    while (owners.count(last) > 0);
    owners.emplace(last, &owner);
    return last;
}

void link_table_t::remove(std::uint32_t link)
{
    owners.erase(link);
}

bool link_table_t::abort(std::uint32_t link)
{
    const auto found = owners.find(link);
    if (found == owners.end())
        return false;
    found->second->abort(link);
    note_change();
    return true;
}

bool link_table_t::take_change()
{
    return std::exchange(changed, false);
}

} // namespace sim::lan
