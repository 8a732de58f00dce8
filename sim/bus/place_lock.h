// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace sim {

class bus_session_t;

/// The locks on one place, by the rules of VPP-4.3, chapter 3.6. Says what can be had now; who
/// waits asks again.
class place_lock_t
{
public:
    using owner_t = const bus_session_t *;

    /// True when the locks leave the place to this session.
    bool allows(owner_t who) const
    {
        return exclusive_owner != nullptr ? exclusive_owner == who
                                          : shared.empty() || shared.count(who) > 0;
    }

    /// Take a lock, or nest it. Nothing: not while another session has its lock.
    std::optional<bus_result_t> take_exclusive(owner_t who);
    std::optional<bus_result_t> take_shared(owner_t who, const std::string &key);

    /// Gives back one lock, an exclusive one first.
    bus_result_t give_back(owner_t who);

    /// Takes away all locks of a session, or of every session.
    void end(owner_t who);
    void end_all();

    lock_kind_t kind() const;

    /// What the session has.
    bus_lock_t held_by(owner_t who) const;

private:
    owner_t exclusive_owner = nullptr;
    unsigned exclusive_count = 0;
    std::unordered_map<owner_t, unsigned> shared; ///< how often each session has it
    std::string shared_key;
};

} // namespace sim
