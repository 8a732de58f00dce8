// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>

/// The pauses that the program's code makes in a test program, which links its own `pause_ms` in
/// place of the program's. They are told to who listens and, unless a test asks for it, not waited
/// for. Every operation may be called from any thread.
class recorded_pauses_t
{
public:
    using listener_t = std::function<void(unsigned long milliseconds)>;

    static recorded_pauses_t &instance();

    /// Forgets the listener, and waits no more.
    void reset();
    /// Lets pauses last as long as they say, or not at all.
    void wait_for_real(bool real);
    /// Calls `listener` in every pause, in the thread that pauses; null calls nothing.
    void on_pause(listener_t listener);

    /// What `pause_ms` does in a test program.
    void pause(unsigned long milliseconds);

private:
    std::mutex mutex;
    std::shared_ptr<const listener_t> called;
    bool waited_for = false;
};
