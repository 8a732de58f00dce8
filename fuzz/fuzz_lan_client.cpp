// SPDX-License-Identifier: MIT
// Lets an instrument on LAN answer with arbitrary bytes. Whatever comes, each call ends in a
// status, a read writes no more than was asked for, and a lost connection stays lost.

#include "visa_io/lan/lan_link.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iterator>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace visa_io;
    constexpr std::size_t most_bytes = 60'000; // what the socket takes without waiting
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) == 0);
    if (size > most_bytes || send(ends[1], data, size, 0) != static_cast<ssize_t>(size)) {
        close(ends[0]);
        close(ends[1]);
        return -1;
    }
    shutdown(ends[1], SHUT_WR);
    {
        lan_link_t link(ends[0], 1, 8);
        const deadline_t deadline = io_clock_t::now() + std::chrono::seconds(5);
        const transfer_t sent = link.write("ROUTes?", true, deadline);
        require(sent.count <= 7);
        for (const std::size_t asked : {std::size_t{3}, std::size_t{40}}) {
            char buffer[64];
            std::fill(std::begin(buffer), std::end(buffer), '#');
            const transfer_t got = link.read(buffer, asked, -1, deadline);
            require(got.count <= asked);
            require(std::all_of(buffer + asked, std::end(buffer), [](char c) { return c == '#'; }));
        }
        ViUInt8 status = 0;
        const ViStatus outcome = link.read_status_byte(status, deadline);
        require(outcome != visa::error_connection_lost ||
                link.clear(deadline) == visa::error_connection_lost);
    }
    close(ends[1]);
    return 0;
}
