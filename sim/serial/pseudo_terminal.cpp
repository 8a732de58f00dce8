// SPDX-License-Identifier: MIT
#include "sim/serial/pseudo_terminal.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace sim::serial {

namespace {

/// Bytes as they are: no echo, no line editing, no signals.
bool make_raw(int descriptor)
{
    termios settings{};
    if (tcgetattr(descriptor, &settings) != 0)
        return false;
    cfmakeraw(&settings);
    return tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

} // namespace

pseudo_terminal_t::pseudo_terminal_t() : instrument_end(posix_openpt(O_RDWR | O_NOCTTY))
{
    if (instrument_end >= 0 && grantpt(instrument_end) == 0 && unlockpt(instrument_end) == 0) {
        device = ptsname(instrument_end);
        program_end = open(device.c_str(), O_RDWR | O_NOCTTY);
    }
    if (program_end < 0 || !make_raw(program_end) ||
        fcntl(instrument_end, F_SETFL, O_NONBLOCK) != 0) {
        const std::system_error error(errno, std::generic_category(), "pseudo-terminal");
        close(program_end);
        close(instrument_end);
        throw error;
    }
}

pseudo_terminal_t::~pseudo_terminal_t()
{
    close(program_end);
    close(instrument_end);
}

std::string pseudo_terminal_t::receive()
{
    // A program that is killed cannot undo its claim to have the line for itself.
    ioctl(program_end, TIOCNXCL);
    char bytes[4096];
    const ssize_t count = read(instrument_end, bytes, sizeof bytes);
    return {bytes, count > 0 ? static_cast<std::size_t>(count) : 0};
}

void pseudo_terminal_t::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(instrument_end, bytes.data(), bytes.size());
        if (count <= 0)
            return;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace sim::serial
