// SPDX-License-Identifier: MIT
#include "sim/command/stop_signals.h"

#include <cerrno>
#include <csignal>
#include <system_error>
#include <unistd.h>

namespace sim::command {

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

} // namespace sim::command
