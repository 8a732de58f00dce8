// SPDX-License-Identifier: MIT
#include "sim/serial/pseudo_terminal.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace sim::serial {

namespace {

/// Bytes as they are: no echo, no line editing, no signals.
termios raw_settings()
{
    termios settings{};
    cfmakeraw(&settings);
    settings.c_cflag |= CREAD;
    // None would mean hanging up.
    cfsetspeed(&settings, B38400);
    return settings;
}

} // namespace

pseudo_terminal_t::pseudo_terminal_t()
{
    const termios settings = raw_settings();
    if (openpty(&instrument_end, &program_end, nullptr, &settings, nullptr) != 0)
        throw std::system_error(errno, std::generic_category(), "pseudo-terminal");
    device = ptsname(instrument_end);
    fcntl(instrument_end, F_SETFL, O_NONBLOCK);
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
