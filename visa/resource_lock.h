// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace visa {

/// The locks that one session has on a resource.
struct held_locks_t
{
    unsigned exclusive_count = 0;
    unsigned shared_count = 0;
    std::string key{}; ///< of the shared lock

    /// What viLock answers about a lock of this kind that was taken.
    ViStatus status_of_lock(ViAccessMode kind) const;

    /// What viUnlock answers about what is left.
    ViStatus status_of_unlock() const;
};

/// The key under which viLock is to share a lock: the requested one, or a new one when that is null
/// or the kind of lock has none. Nothing when the key is no valid one.
std::optional<std::string> lock_key(ViAccessMode kind, const char *requested_key);

/// The locks on one resource, by the rules of VPP-4.3, chapter 3.6. Says what can be had now; who
/// waits asks again. Locks nest, each kind for itself.
class resource_lock_t
{
public:
    using owner_t = const void *; ///< the session, as an identity only

    /// True when the locks leave the resource to this session.
    bool allows(owner_t who) const
    {
        return exclusive_owner != nullptr ? exclusive_owner == who
                                          : shared.empty() || shared.count(who) > 0;
    }

    /// Take a lock, or nest it. Nothing: not while another session has its lock.
    std::optional<ViStatus> take_exclusive(owner_t who);
    std::optional<ViStatus> take_shared(owner_t who, const std::string &key);

    /// Gives back one lock, an exclusive one first.
    ViStatus give_back(owner_t who);

    /// Takes away all locks of a session, or of every session.
    void end(owner_t who);
    void end_all();

    /// As VI_ATTR_RSRC_LOCK_STATE says it, whoever has the lock.
    ViAccessMode state() const;

    held_locks_t held_by(owner_t who) const;

private:
    owner_t exclusive_owner = nullptr;
    unsigned exclusive_count = 0;
    std::unordered_map<owner_t, unsigned> shared; ///< how often each session has it
    std::string shared_key;
};

} // namespace visa
