// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"

#include <netinet/in.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace visa_io {

class stop_signal_t;

/// A TCP connection whose every wait ends at a deadline, or early by a signal.
///
/// Each function answers success, error_timeout or error_connection_lost. After a failure the
/// connection is closed.
class stream_t
{
public:
    /// Takes a connected socket over, a negative number for none.
    explicit stream_t(const stop_signal_t &stop_signal, int connected_socket = -1);
    ~stream_t();
    stream_t(const stream_t &) = delete;
    stream_t &operator=(const stream_t &) = delete;

    ViStatus connect(in_addr host, std::uint16_t port, deadline_t deadline);
    ViStatus send(std::string_view bytes, deadline_t deadline);

    /// Waits for at least one byte; what came is valid until the next call.
    ViStatus receive(std::string_view &bytes, deadline_t deadline);

    bool is_open() const { return descriptor >= 0; }
    void close();

private:
    ViStatus fail(ViStatus status);
    ViStatus wait(short events, deadline_t deadline);

    const stop_signal_t &stop;
    int descriptor;
    std::vector<char> buffer;
};

} // namespace visa_io
