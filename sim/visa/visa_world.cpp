// SPDX-License-Identifier: MIT
#include "sim/visa/visa_world.h"

#include "sim/fleet_json.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <utility>

namespace sim::visa {

visa_world_t &visa_world_t::instance()
{
    // Never destroyed: other threads may still be inside a call while the process exits.
    static auto *const world = new visa_world_t();
    return *world;
}

visa_world_t::visa_world_t()
{
    const char *const path = std::getenv("CORVANE_SIM_FLEET");
    if (path == nullptr || *path == '\0') {
        start_fleet = default_fleet();
        bus = visa_bus_t(start_fleet);
        return;
    }
    try {
        start_fleet = read_fleet_file(path);
        bus = visa_bus_t(start_fleet);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "corvane simulator: no instruments, fleet file \"%s\": %s\n", path,
                     error.what());
        start_fleet = fleet_t();
    }
}

void visa_world_t::load(const fleet_t &fleet)
{
    bus = visa_bus_t(fleet);
    for (const auto &[handle, session] : sessions)
        session->closed = true;
    sessions.clear();
    find_lists.clear();
    scripts.clear();
    faults.clear();
    changed.notify_all();
}

void visa_world_t::reset()
{
    load(start_fleet);
    faults = fault_plan_t();
    log = traffic_log_t();
}

std::shared_ptr<visa_session_t> visa_world_t::session(ViObject handle) const
{
    const auto found = sessions.find(handle);
    return found == sessions.end() ? nullptr : found->second;
}

bool visa_world_t::close(ViObject handle)
{
    if (managers.erase(handle) > 0) {
        close_manager(handle);
        return true;
    }
    if (find_lists.erase(handle) > 0)
        return true;
    const auto found = sessions.find(handle);
    if (found == sessions.end())
        return false;
    found->second->closed = true;
    sessions.erase(found);
    changed.notify_all();
    return true;
}

void visa_world_t::close_manager(ViSession manager)
{
    for (auto entry = find_lists.begin(); entry != find_lists.end();) {
        const bool own = entry->second.resource_manager == manager;
        entry = own ? find_lists.erase(entry) : std::next(entry);
    }
    for (auto entry = sessions.begin(); entry != sessions.end();) {
        const bool own = entry->second->resource_manager == manager;
        entry->second->closed = entry->second->closed || own;
        entry = own ? sessions.erase(entry) : std::next(entry);
    }
    changed.notify_all();
}

} // namespace sim::visa
