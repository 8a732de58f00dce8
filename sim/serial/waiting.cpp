// SPDX-License-Identifier: MIT
#include "sim/serial/waiting.h"

#include <cerrno>
#include <csignal>
#include <iterator>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace sim::serial {

namespace {

/// A byte is written to the second end when the program is to stop.
int stop_pipe[2];

extern "C" void note_stop(int /*signal*/)
{
    // Nothing can be done about a failure here, and a full pipe says what is to be said already.
    [[maybe_unused]] const ssize_t count = write(stop_pipe[1], "", 1);
}

} // namespace

int catch_stop_signals()
{
    if (pipe(stop_pipe) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    struct sigaction action = {};
    action.sa_handler = note_stop;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    return stop_pipe[0];
}

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
