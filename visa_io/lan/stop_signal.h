// SPDX-License-Identifier: MIT
#pragma once

namespace visa_io {

/// Ends the waits of one thread from another; once given, it stays.
class stop_signal_t
{
public:
    stop_signal_t(); ///< throws std::system_error
    ~stop_signal_t();
    stop_signal_t(const stop_signal_t &) = delete;
    stop_signal_t &operator=(const stop_signal_t &) = delete;

    void give() const;

    /// A descriptor that can be read from once the signal has been given.
    int descriptor() const { return event; }

private:
    int event;
};

} // namespace visa_io
