// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus.h"
#include "sim/bus/fleet.h"
#include "sim/visa/visa_session.h"
#include "visa/object_table.h"

#include <condition_variable>
#include <mutex>

namespace sim::visa {

/// Everything the library's calls and the control interface share. The bus guards itself; the other
/// members are used with the mutex held, which is never taken while the bus is held.
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

    /// Closes what the number stands for, with everything opened through it; false when it
    /// stands for nothing.
    bool close(ViObject object);

    bus_t bus;
    std::mutex mutex;
    std::condition_variable closing; ///< a session has been closed
    object_table_t<visa_session_t> objects;

private:
    visa_world_t();

    void end(const object_table_t<visa_session_t>::sessions_t &sessions);

    fleet_t start_fleet;
};

} // namespace sim::visa
