// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/scpi_error.h"

#include <cstddef>
#include <deque>
#include <string>

namespace sim {

/// The SCPI error/event queue: first in, first out.
class error_queue_t
{
public:
    static constexpr std::size_t depth = 20;

    /// Queues an error. When the queue is full its newest entry becomes -350 and the
    /// error is dropped.
    void push(scpi_error_t error);

    /// Takes the oldest entry as the reply to "SYSTem:ERRor?", for example
    /// `-113,"Undefined header"`; `0,"No error"` when the queue is empty.
    std::string take();

    void clear() { entries.clear(); }
    bool empty() const { return entries.empty(); }
    const std::deque<scpi_error_t> &content() const { return entries; }

private:
    std::deque<scpi_error_t> entries;
};

} // namespace sim
