// SPDX-License-Identifier: MIT
#include "upgrade/accepted_id.h"

namespace {

struct accepted_id_t
{
    bool range_mode = false;
    std::int32_t exact_id = 0;
    std::int32_t min_id = 0;
    std::int32_t max_id = 0;
};

accepted_id_t accepted;

} // namespace

void set_range_mode(bool range)
{
    accepted.range_mode = range;
}

void set_exact_id(std::int32_t id)
{
    accepted.exact_id = id;
}

void set_min_id(std::int32_t id)
{
    accepted.min_id = id;
}

void set_max_id(std::int32_t id)
{
    accepted.max_id = id;
}

void set_accepted_ids(const upgrade_id_t &record)
{
    set_exact_id(record.id);
    set_min_id(record.lowest);
    set_max_id(record.highest);
    set_range_mode(record.exact == 0);
}

bool check_product_id(std::int32_t id)
{
    if (accepted.range_mode)
        return accepted.min_id <= id && id <= accepted.max_id;
    return id == accepted.exact_id;
}
