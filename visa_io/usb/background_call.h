// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"

#include <functional>
#include <future>
#include <optional>

namespace visa_io {

/// Calls of the kernel that may last longer than their caller can wait: the driver's own limits for
/// an instrument that is dead are several seconds, and it makes callers queue. One at a time.
class background_call_t
{
public:
    /// Makes calls of the kernel and gives the errno of the one that failed, or 0.
    using job_t = std::function<int()>;

    /// Waits for a job that still runs; gives false when it does at the deadline.
    bool is_idle_by(deadline_t deadline) const;

    /// Begins a job; none may run.
    void start(job_t job);

    /// What the job came to; nothing when it still runs at the deadline.
    std::optional<int> result_by(deadline_t deadline);

private:
    std::future<int> running; ///< its destructor waits for the job
};

} // namespace visa_io
