// SPDX-License-Identifier: MIT
#include "visa_io/world.h"

#include <chrono>

namespace visa_io {

namespace {

/// Ten years, which leaves the clock room to count on.
constexpr std::chrono::milliseconds endless = std::chrono::hours(24 * 3652);

} // namespace

world_t &world_t::instance()
{
    // Never destroyed: other threads may still be inside a call while the process exits.
    static auto *const world = new world_t();
    return *world;
}

void world_t::wait(guard_t &guard, deadline_t deadline)
{
    changed.wait_until(guard, deadline);
}

std::shared_ptr<visa::resource_lock_t> world_t::lock_of(const std::string &key)
{
    for (auto entry = locks.begin(); entry != locks.end();)
        entry = entry->second.expired() ? locks.erase(entry) : std::next(entry);
    auto lock = locks[key].lock();
    if (!lock)
        locks[key] = lock = std::make_shared<visa::resource_lock_t>();
    return lock;
}

std::optional<visa::object_table_t<session_t>::sessions_t> world_t::close(ViObject object)
{
    auto closed = objects.close(object);
    if (!closed)
        return closed;
    for (const auto &session : *closed) {
        session->closed = true;
        session->lock->end(session.get());
        if (session->busy)
            session->link->cancel();
    }
    changed.notify_all();
    return closed;
}

deadline_t deadline_after(ViUInt32 timeout_ms)
{
    return io_clock_t::now() +
           (timeout_ms == visa::timeout_infinite ? endless : std::chrono::milliseconds(timeout_ms));
}

} // namespace visa_io
