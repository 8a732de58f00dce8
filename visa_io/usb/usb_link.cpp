// SPDX-License-Identifier: MIT
#include "visa_io/usb/usb_link.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <iterator>
#include <limits>
#include <linux/usb/tmc.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace visa_io {

namespace {

/// The driver refuses less.
constexpr std::int64_t shortest_time_ms = 100;

// What the driver tells of the last transfer that was read.
constexpr std::uint8_t read_end = 1;
constexpr std::uint8_t read_term_char = 2;

struct failure_row_t
{
    int number;
    ViStatus status;
    bool clears; ///< the message may lie half way in the driver or the instrument
};

/// Anything else means that the instrument has gone.
constexpr failure_row_t failures[] = {
    {ETIMEDOUT, visa::error_timeout, true},
    {EINTR, visa::error_io, true},
    {EPIPE, visa::error_io, true},
    {EINVAL, visa::error_operation_not_supported, false},
    {ENOTTY, visa::error_operation_not_supported, false},
    {EOPNOTSUPP, visa::error_operation_not_supported, false},
};

const failure_row_t *failure_of(int number)
{
    const auto *const row =
        std::find_if(std::begin(failures), std::end(failures),
                     [number](const failure_row_t &one) { return one.number == number; });
    return row == std::end(failures) ? nullptr : row;
}

} // namespace

usb_link_t::~usb_link_t()
{
    close(node);
}

transfer_t usb_link_t::write(std::string_view data, bool end, deadline_t deadline)
{
    transfer_t done;
    done.status = allow_until(deadline);
    if (done.status != visa::success || data.empty())
        return done;
    std::uint8_t ends = end ? 1 : 0;
    done.status = status_of(ioctl(node, USBTMC_IOCTL_EOM_ENABLE, &ends) >= 0);
    if (done.status != visa::success)
        return done;
    // Whole: another call would be another message of the bus.
    const ssize_t count = ::write(node, data.data(), data.size());
    done.status = status_of(count >= 0);
    done.count = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    if (done.status == visa::success && done.count < data.size())
        done.status = visa::error_io;
    return done;
}

transfer_t usb_link_t::read(char *buffer, std::size_t size, int term_char, deadline_t deadline)
{
    transfer_t done;
    usbtmc_termchar termination{static_cast<std::uint8_t>(std::max(term_char, 0)),
                                static_cast<std::uint8_t>(term_char >= 0 ? 1 : 0)};
    done.status = allow_until(deadline);
    if (done.status == visa::success)
        done.status = status_of(ioctl(node, USBTMC_IOCTL_CONFIG_TERMCHAR, &termination) >= 0);
    const std::uint8_t ends = term_char >= 0 ? read_end | read_term_char : read_end;
    std::uint8_t attributes = 0;
    while (done.status == visa::success && done.count < size && (attributes & ends) == 0)
        done.status = read_piece(done, buffer, size, attributes, deadline);
    done.end = (attributes & read_end) != 0;
    return done;
}

ViStatus usb_link_t::read_piece(transfer_t &done, char *buffer, std::size_t size,
                                std::uint8_t &attributes, deadline_t deadline)
{
    ViStatus status = allow_until(deadline);
    if (status != visa::success)
        return status;
    const ssize_t count = ::read(node, buffer + done.count, size - done.count);
    status = status_of(count >= 0);
    if (status != visa::success)
        return status;
    done.count += static_cast<std::size_t>(count);
    status = status_of(ioctl(node, USBTMC_IOCTL_MSG_IN_ATTR, &attributes) >= 0);
    // One that says nothing, and not why, would be asked for ever.
    return status == visa::success && count == 0 && attributes == 0 ? visa::error_io : status;
}

ViStatus usb_link_t::clear(deadline_t deadline)
{
    const ViStatus status = allow_until(deadline);
    return status == visa::success ? status_of(ioctl(node, USBTMC_IOCTL_CLEAR) >= 0) : status;
}

ViStatus usb_link_t::read_status_byte(ViUInt8 &byte, deadline_t deadline)
{
    const ViStatus status = allow_until(deadline);
    return status == visa::success ? status_of(ioctl(node, USBTMC488_IOCTL_READ_STB, &byte) >= 0)
                                   : status;
}

ViStatus usb_link_t::trigger(deadline_t deadline)
{
    const ViStatus status = allow_until(deadline);
    return status == visa::success ? status_of(ioctl(node, USBTMC488_IOCTL_TRIGGER) >= 0) : status;
}

ViStatus usb_link_t::allow_until(deadline_t deadline)
{
    using std::chrono::milliseconds;
    if (lost)
        return visa::error_connection_lost;
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - io_clock_t::now());
    auto time_ms = static_cast<std::uint32_t>(std::clamp<std::int64_t>(
        left.count(), shortest_time_ms, std::numeric_limits<std::int32_t>::max()));
    return status_of(ioctl(node, USBTMC_IOCTL_SET_TIMEOUT, &time_ms) >= 0);
}

ViStatus usb_link_t::status_of(bool succeeded)
{
    if (succeeded)
        return visa::success;
    const failure_row_t *const failure = failure_of(errno);
    lost = failure == nullptr;
    // The driver's own abort after a time-out does not reach the transfer that it means. Without a
    // clear a late reply would answer the next query.
    if (failure != nullptr && failure->clears)
        lost = ioctl(node, USBTMC_IOCTL_CLEAR) < 0;
    return failure == nullptr ? visa::error_connection_lost : failure->status;
}

} // namespace visa_io
