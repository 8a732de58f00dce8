// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/world.h"

#include <memory>
#include <string>

namespace visa_io {

/// A call on an object, with the world held.
class session_call_t
{
public:
    explicit session_call_t(ViObject number);

    /// Whether the object is a session with an instrument; if not, refusal() says what it is.
    explicit operator bool() const { return session != nullptr; }
    ViStatus refusal() const;

    /// Takes a lock on the session's resource, of which others may have to let go first; what
    /// viLock answers.
    ViStatus lock(ViAccessMode kind, const std::string &key, ViUInt32 timeout_ms);

    world_t &world;
    std::shared_ptr<session_t> session; ///< before the guard: its link may end with it, unguarded
    world_t::guard_t guard;

private:
    const ViObject handle;
};

/// A call that uses the link of a session, with the world released. Waits for its turn.
class link_call_t
{
public:
    explicit link_call_t(ViSession number);
    ~link_call_t();
    link_call_t(const link_call_t &) = delete;
    link_call_t &operator=(const link_call_t &) = delete;

    /// Why the link cannot be used, or success.
    ViStatus verdict() const { return refused; }

    device_link_t &link() const { return *call.session->link; }
    deadline_t deadline() const { return latest; }

    /// The attributes as they were when the call began.
    const visa::object_attributes_t &attributes() const { return settings; }

    /// What the call answers: that of an operation, unless the session was closed meanwhile.
    ViStatus answer(ViStatus outcome);

private:
    ViStatus begin();

    session_call_t call;
    visa::object_attributes_t settings;
    deadline_t latest{};
    ViStatus refused;
};

} // namespace visa_io
