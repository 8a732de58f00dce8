// SPDX-License-Identifier: MIT
#include "tests/support/pseudo_terminal.h"

#include <QtGlobal>

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int arrival_timeout_ms = 1000;

} // namespace

pseudo_terminal_t::pseudo_terminal_t() : master(posix_openpt(O_RDWR | O_NOCTTY))
{
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0)
        qFatal("no pseudo-terminal");
    termios settings{};
    tcgetattr(master, &settings);
    cfmakeraw(&settings);
    tcsetattr(master, TCSANOW, &settings);
}

pseudo_terminal_t::~pseudo_terminal_t()
{
    if (answering.joinable())
        answering.join();
    close(master);
}

std::string pseudo_terminal_t::path() const
{
    return ptsname(master);
}

void pseudo_terminal_t::answer_next(const QByteArray &reply)
{
    answering = std::thread([this, reply] {
        if (wait_for_bytes())
            receive();
        if (write(master, reply.constData(), static_cast<std::size_t>(reply.size())) < 0)
            qFatal("the pseudo-terminal does not take the reply");
    });
}

QByteArray pseudo_terminal_t::take_bytes(int count)
{
    if (answering.joinable())
        answering.join();
    while (received.size() < count && wait_for_bytes())
        receive();
    QByteArray taken = received.left(count);
    received.remove(0, count);
    return taken;
}

bool pseudo_terminal_t::wait_for_bytes() const
{
    pollfd waiting{master, POLLIN, 0};
    return poll(&waiting, 1, arrival_timeout_ms) == 1 && (waiting.revents & POLLIN) != 0;
}

void pseudo_terminal_t::receive()
{
    char bytes[512];
    const ssize_t count = read(master, bytes, sizeof bytes);
    if (count > 0)
        received.append(bytes, static_cast<int>(count));
}
