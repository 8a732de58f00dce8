// SPDX-License-Identifier: MIT
#include "visa/resource_lock.h"

#include <atomic>

namespace visa {

namespace {

std::string new_key()
{
    static std::atomic<unsigned> last_number{0};
    return "corvane-" + std::to_string(++last_number);
}

ViStatus nested_status(unsigned exclusive_count, unsigned shared_count, unsigned unnested)
{
    if (exclusive_count > unnested)
        return success_nested_exclusive;
    return shared_count > unnested ? success_nested_shared : success;
}

} // namespace

ViStatus held_locks_t::status_of_lock(ViAccessMode kind) const
{
    return kind == access_exclusive_lock ? nested_status(exclusive_count, 0, 1)
                                         : nested_status(0, shared_count, 1);
}

ViStatus held_locks_t::status_of_unlock() const
{
    return nested_status(exclusive_count, shared_count, 0);
}

std::optional<std::string> lock_key(ViAccessMode kind, const char *requested_key)
{
    if (kind != access_shared_lock || requested_key == nullptr)
        return new_key();
    std::string key = requested_key;
    if (key.empty() || key.size() >= find_buffer_bytes)
        return std::nullopt;
    return key;
}

std::optional<ViStatus> resource_lock_t::take_exclusive(owner_t who)
{
    if (!allows(who))
        return std::nullopt;
    exclusive_owner = who;
    ++exclusive_count;
    return success;
}

std::optional<ViStatus> resource_lock_t::take_shared(owner_t who, const std::string &key)
{
    const bool has_it = shared.count(who) > 0;
    // It would wait for itself.
    if (exclusive_owner == who && !has_it)
        return error_resource_locked;
    if (has_it && key != shared_key)
        return error_invalid_access_key;
    if ((exclusive_owner != nullptr && exclusive_owner != who) ||
        (!shared.empty() && key != shared_key))
        return std::nullopt;
    shared_key = key;
    ++shared[who];
    return success;
}

ViStatus resource_lock_t::give_back(owner_t who)
{
    const auto own = shared.find(who);
    if (exclusive_owner == who) {
        if (--exclusive_count == 0)
            exclusive_owner = nullptr;
    } else if (own == shared.end()) {
        return error_session_not_locked;
    } else if (--own->second == 0) {
        shared.erase(own);
    }
    return success;
}

void resource_lock_t::end(owner_t who)
{
    shared.erase(who);
    if (exclusive_owner != who)
        return;
    exclusive_owner = nullptr;
    exclusive_count = 0;
}

void resource_lock_t::end_all()
{
    *this = resource_lock_t();
}

ViAccessMode resource_lock_t::state() const
{
    if (exclusive_owner != nullptr)
        return access_exclusive_lock;
    return shared.empty() ? access_no_lock : access_shared_lock;
}

held_locks_t resource_lock_t::held_by(owner_t who) const
{
    held_locks_t held;
    const auto own = shared.find(who);
    if (exclusive_owner == who)
        held.exclusive_count = exclusive_count;
    if (own != shared.end()) {
        held.shared_count = own->second;
        held.key = shared_key;
    }
    return held;
}

} // namespace visa
