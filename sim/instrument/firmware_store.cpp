// SPDX-License-Identifier: MIT
#include "sim/instrument/firmware_store.h"

#include <algorithm>
#include <utility>

namespace sim {

scpi_error_t firmware_store_t::announce(image_kind_t kind, std::size_t image_bytes)
{
    announced = image_bytes > 0 && image_bytes <= most_image_bytes;
    failed = !announced;
    if (failed)
        return scpi_error_t::data_out_of_range;
    received.push_back({kind, image_bytes, {}});
    return scpi_error_t::none;
}

scpi_error_t firmware_store_t::accept_block(std::string_view block)
{
    ++blocks_seen;
    unplug_reached = blocks_seen == misbehaviour.unplug_at_block;
    if (blocks_seen == misbehaviour.unready_at_block)
        unready_for_good = true;
    if (blocks_seen == misbehaviour.busy_after_block)
        begin_busy();
    if (unplug_reached || unready_for_good)
        return scpi_error_t::execution_error;

    failed = true;
    if (block.size() != block_bytes)
        return scpi_error_t::invalid_block_data;
    if (!announced)
        return scpi_error_t::execution_error;
    firmware_image_t &image = received.back();
    const std::size_t missing = image.announced_bytes - image.bytes.size();
    if (missing == 0)
        return scpi_error_t::too_much_data;
    image.bytes.append(block.substr(0, std::min(missing, block_bytes)));
    failed = false;
    return scpi_error_t::none;
}

bool firmware_store_t::poll_ready()
{
    if (busy_polls_left > 0) {
        --busy_polls_left;
        return false;
    }
    return ready();
}

void firmware_store_t::keep_parameter(std::string name, std::string_view bytes)
{
    kept.push_back({std::move(name), std::string(bytes)});
}

void firmware_store_t::misbehave(const upgrade_misbehaviour_t &plan)
{
    misbehaviour = plan;
    blocks_seen = 0;
    if (plan.busy_after_block == 0)
        begin_busy();
}

void firmware_store_t::begin_busy()
{
    busy_polls_left = misbehaviour.busy_polls;
}

void firmware_store_t::restart()
{
    announced = false;
    failed = false;
    unready_for_good = false;
    unplug_reached = false;
    busy_polls_left = 0;
}

} // namespace sim
