// SPDX-License-Identifier: MIT
#pragma once

#include "visa/event_settings.h"
#include "visa/object_attributes.h"
#include "visa/object_table.h"
#include "visa/resource_lock.h"
#include "visa_io/device_link.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace visa_io {

/// One open session with an instrument. Guarded by the world's mutex, but for the link, which
/// belongs to the call that has set `busy`.
struct session_t
{
    visa::object_attributes_t attributes;
    visa::event_settings_t events;
    std::shared_ptr<visa::resource_lock_t> lock; ///< of all sessions with the instrument
    std::unique_ptr<device_link_t> link;
    bool busy = false;   ///< a call uses the link
    bool closed = false; ///< for calls that wait while another thread closes the session
};

/// Everything that is open in the process.
class world_t
{
public:
    using guard_t = std::unique_lock<std::mutex>;

    static world_t &instance();

    // All of these with the mutex held.

    /// Waits until something has changed or the deadline has come.
    void wait(guard_t &guard, deadline_t deadline);

    /// The lock that all sessions with a resource share.
    std::shared_ptr<visa::resource_lock_t> lock_of(const std::string &key);

    /// Closes what the number stands for, with everything opened through it; the sessions among
    /// that, whose links end with them, are to be dropped without the mutex.
    std::optional<visa::object_table_t<session_t>::sessions_t> close(ViObject object);

    std::mutex mutex;
    std::condition_variable changed; ///< a session was closed, a link or a lock given back
    visa::object_table_t<session_t> objects;

private:
    std::unordered_map<std::string, std::weak_ptr<visa::resource_lock_t>> locks;
};

/// The moment at which a time-out of so many milliseconds that begins now is over.
deadline_t deadline_after(ViUInt32 timeout_ms);

} // namespace visa_io
