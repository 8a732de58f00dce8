// SPDX-License-Identifier: MIT
#include "visa_io/usb/background_call.h"

#include <utility>

namespace visa_io {

bool background_call_t::is_idle_by(deadline_t deadline) const
{
    return !running.valid() || running.wait_until(deadline) == std::future_status::ready;
}

void background_call_t::start(job_t job)
{
    running = std::async(std::launch::async, std::move(job));
}

std::optional<int> background_call_t::result_by(deadline_t deadline)
{
    return is_idle_by(deadline) ? std::optional(running.get()) : std::nullopt;
}

} // namespace visa_io
