// SPDX-License-Identifier: MIT
#pragma once

#include "sim/visa/fault_plan.h"
#include "sim/visa/visa_session.h"
#include "sim/visa/visa_types.h"
#include "sim/visa/visa_world.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace sim::visa {

/// One call of an entry point: holds the world's mutex, has counted the call and has
/// suffered the faults that come before it (status, delay, unplug).
class visa_call_t
{
public:
    /// A call on a handle; the session is null when the handle is no instrument session.
    visa_call_t(corvane_sim_entry_t entry, ViObject handle);

    /// A call that names a resource, or none.
    visa_call_t(corvane_sim_entry_t entry, std::string_view resource_name);

    /// The status to return at once, by a fault.
    const std::optional<ViStatus> &verdict() const { return status; }

    /// The status to return at once from a call that talks with the instrument: by a fault,
    /// for a handle that is no instrument session, for a lost connection.
    std::optional<ViStatus> transfer_verdict() const;

    visa_world_t &world;
    std::unique_lock<std::mutex> lock;
    std::shared_ptr<visa_session_t> session;
    std::vector<fault_t> reply_faults; ///< the others that hit the call, viRead's delays too

private:
    void suffer(corvane_sim_entry_t entry, std::optional<std::size_t> resource);

    ViObject handle = null_object;
    std::optional<ViStatus> status;
};

} // namespace sim::visa
