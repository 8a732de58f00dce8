// SPDX-License-Identifier: MIT
#pragma once

#include "sim/fleet.h"
#include "sim/visa/fault_plan.h"
#include "sim/visa/scripted_replies.h"
#include "sim/visa/traffic_log.h"
#include "sim/visa/visa_bus.h"
#include "sim/visa/visa_session.h"
#include "sim/visa/visa_types.h"

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace sim::visa {

/// The names that a search has found, and how far they have been handed out.
struct find_list_t
{
    ViSession resource_manager = null_object;
    std::vector<std::string> names;
    std::size_t next = 0;
};

/// Everything the library's calls and the control interface share. Every member is used
/// with the mutex held; calls that wait release it and wait on `changed`.
class visa_world_t
{
public:
    /// The one world of the process. The first call builds it with the fleet of the file
    /// that the environment variable CORVANE_SIM_FLEET names, or with the default fleet.
    static visa_world_t &instance();

    /// Replaces the instruments, closes instrument sessions and find lists, drops faults and
    /// scripts. Throws fleet_error_t and then changes nothing.
    void load(const fleet_t &fleet);

    /// As at program start; resource manager sessions stay.
    void reset();

    /// A number for a new session or find list, never used before.
    ViObject new_handle() { return ++last_handle; }

    std::shared_ptr<visa_session_t> session(ViObject handle) const;

    /// Closes what the handle stands for, with everything opened through it; false when it
    /// stands for nothing.
    bool close(ViObject handle);

    std::mutex mutex;
    std::condition_variable changed;
    visa_bus_t bus;
    fault_plan_t faults;
    scripted_replies_t scripts;
    traffic_log_t log;
    std::unordered_set<ViSession> managers;
    std::unordered_map<ViSession, std::shared_ptr<visa_session_t>> sessions;
    std::unordered_map<ViFindList, find_list_t> find_lists;

private:
    visa_world_t();

    void close_manager(ViSession manager);

    fleet_t start_fleet;
    ViObject last_handle = null_object;
};

} // namespace sim::visa
