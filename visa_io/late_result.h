// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"

#include <future>
#include <optional>
#include <thread>
#include <utility>

namespace visa_io {

/// What a call of the system gives, or nothing when it takes longer than until the deadline. It
/// cannot be ended then: its thread lives on until it ends by itself, and its result is dropped.
/// The library is never unloaded.
template <typename result_t, typename call_t>
std::optional<result_t> result_by(deadline_t deadline, call_t call)
{
    std::packaged_task<result_t()> task(std::move(call));
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    if (result.wait_until(deadline) != std::future_status::ready)
        return std::nullopt;
    return result.get();
}

} // namespace visa_io
