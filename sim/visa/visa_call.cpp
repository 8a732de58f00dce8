// SPDX-License-Identifier: MIT
#include "sim/visa/visa_call.h"

#include <chrono>
#include <thread>

namespace sim::visa {

visa_call_t::visa_call_t(corvane_sim_entry_t entry, ViObject handle_)
    : world(visa_world_t::instance()),
      lock(world.mutex),
      session(world.session(handle_)),
      handle(handle_)
{
    suffer(entry, session ? std::optional(session->resource) : std::nullopt);
}

visa_call_t::visa_call_t(corvane_sim_entry_t entry, std::string_view resource_name)
    : world(visa_world_t::instance()), lock(world.mutex)
{
    suffer(entry, world.bus.resource_of(resource_name));
}

std::optional<ViStatus> visa_call_t::transfer_verdict() const
{
    if (status)
        return status;
    if (!session || session->closed) {
        const bool known = world.managers.count(handle) + world.find_lists.count(handle) > 0;
        return known ? error_operation_not_supported : error_invalid_object;
    }
    if (!world.bus.is_connected(*session))
        return error_connection_lost;
    return std::nullopt;
}

void visa_call_t::suffer(corvane_sim_entry_t entry, std::optional<std::size_t> resource)
{
    for (fault_t &fault : world.faults.take(entry, resource)) {
        if (fault.kind == CORVANE_SIM_FAULT_STATUS) {
            status = static_cast<ViStatus>(fault.value);
        } else if (fault.kind == CORVANE_SIM_FAULT_UNPLUG && resource) {
            world.bus.unplug(*resource);
            world.changed.notify_all();
        } else if (fault.kind == CORVANE_SIM_FAULT_DELAY && entry != CORVANE_SIM_READ) {
            lock.unlock();
            std::this_thread::sleep_for(std::chrono::milliseconds(fault.value));
            lock.lock();
        } else {
            reply_faults.push_back(std::move(fault));
        }
    }
}

} // namespace sim::visa
