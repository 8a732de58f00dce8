// SPDX-License-Identifier: MIT
#include "sim/bus/place_lock.h"

namespace sim {

std::optional<bus_result_t> place_lock_t::take_exclusive(owner_t who)
{
    if (!allows(who))
        return std::nullopt;
    exclusive_owner = who;
    ++exclusive_count;
    return bus_result_t::ok;
}

std::optional<bus_result_t> place_lock_t::take_shared(owner_t who, const std::string &key)
{
    const bool has_it = shared.count(who) > 0;
    // It would wait for itself.
    if (exclusive_owner == who && !has_it)
        return bus_result_t::locked;
    if (has_it && key != shared_key)
        return bus_result_t::wrong_key;
    if ((exclusive_owner != nullptr && exclusive_owner != who) ||
        (!shared.empty() && key != shared_key))
        return std::nullopt;
    shared_key = key;
    ++shared[who];
    return bus_result_t::ok;
}

bus_result_t place_lock_t::give_back(owner_t who)
{
    const auto own = shared.find(who);
    if (exclusive_owner == who) {
        if (--exclusive_count == 0)
            exclusive_owner = nullptr;
    } else if (own == shared.end()) {
        return bus_result_t::not_locked;
    } else if (--own->second == 0) {
        shared.erase(own);
    }
    return bus_result_t::ok;
}

void place_lock_t::end(owner_t who)
{
    shared.erase(who);
    if (exclusive_owner != who)
        return;
    exclusive_owner = nullptr;
    exclusive_count = 0;
}

void place_lock_t::end_all()
{
    *this = place_lock_t();
}

lock_kind_t place_lock_t::kind() const
{
    if (exclusive_owner != nullptr)
        return lock_kind_t::exclusive;
    return shared.empty() ? lock_kind_t::none : lock_kind_t::shared;
}

bus_lock_t place_lock_t::held_by(owner_t who) const
{
    bus_lock_t held;
    const auto own = shared.find(who);
    if (exclusive_owner == who)
        held.exclusive_count = exclusive_count;
    if (own != shared.end()) {
        held.shared_count = own->second;
        held.key = shared_key;
    }
    return held;
}

} // namespace sim
