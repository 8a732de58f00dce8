// SPDX-License-Identifier: MIT
#include "sim/serial/waiting.h"

#include <cerrno>
#include <iterator>
#include <poll.h>

namespace sim::serial {

wake_t wait_for(int stop, int line, int timeout_ms)
{
    pollfd descriptors[] = {{stop, POLLIN, 0}, {line, POLLIN, 0}};
    int ready = 0;
    do
        ready = poll(descriptors, std::size(descriptors), timeout_ms);
    while (ready < 0 && errno == EINTR);
    if (ready <= 0)
        return wake_t::timeout;
    return descriptors[0].revents != 0 ? wake_t::stop : wake_t::line;
}

} // namespace sim::serial
