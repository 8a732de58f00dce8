// SPDX-License-Identifier: MIT
#include "visa_io/usb/usb_link.h"

#include "visa_io/usb/uninterrupted.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <linux/usb/tmc.h>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace visa_io {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds shortest_timeout{100}; // the driver refuses less
constexpr milliseconds longest_timeout{0x3FFFFFFF};
// How much later than the deadline the driver may say what came of a transfer.
constexpr milliseconds grace{400};
constexpr int unknown_char = -2;
constexpr std::uint8_t end_of_message = 1; // in the attributes of a received message

struct error_row_t
{
    int error;
    ViStatus status;
};

// The rest are transfers that failed.
constexpr error_row_t error_rows[] = {
    {0, visa::success},
    {ETIMEDOUT, visa::error_timeout},
    {ENODEV, visa::error_connection_lost},
    {ESHUTDOWN, visa::error_connection_lost},
    {ENXIO, visa::error_connection_lost},
    {EPROTO, visa::error_connection_lost},
    {EINVAL, visa::error_operation_not_supported},
    {ENOTTY, visa::error_operation_not_supported},
    {EOPNOTSUPP, visa::error_operation_not_supported},
};

ViStatus status_of(int error)
{
    const auto *const row =
        std::find_if(std::begin(error_rows), std::end(error_rows),
                     [error](const error_row_t &r) { return r.error == error; });
    return row == std::end(error_rows) ? visa::error_io : row->status;
}

template <typename... argument_t>
int control(int node, unsigned long request, argument_t... argument)
{
    return uninterrupted([&] { return ::ioctl(node, request, argument...); }) < 0 ? errno : 0;
}

int set_timeout(int node, deadline_t deadline)
{
    const auto remaining = std::chrono::duration_cast<milliseconds>(deadline - io_clock_t::now());
    auto timeout_ms = static_cast<std::uint32_t>(
        std::clamp(remaining, shortest_timeout, longest_timeout).count());
    return control(node, USBTMC_IOCTL_SET_TIMEOUT, &timeout_ms);
}

} // namespace

usb_link_t::~usb_link_t()
{
    // After one that takes long, and is waited for, another would take as long again.
    if (!is_lost && calls.is_idle_by(io_clock_t::now() + grace) && needs_recovery)
        recover();
}

// The driver's own aborts do not reach the transfer that they mean.
int usb_link_t::recover()
{
    const int error = control(node.get(), USBTMC_IOCTL_CLEAR);
    needs_recovery = error != 0;
    return error;
}

usb_link_t::limits_t usb_link_t::begin(deadline_t deadline)
{
    has_begun = false;
    return {deadline, std::max(deadline, io_clock_t::now() + shortest_timeout) + grace};
}

// One step of an operation, for which the instrument has until the deadline.
ViStatus usb_link_t::perform(const job_t &job, const limits_t &limits)
{
    if (is_lost)
        return visa::error_connection_lost;
    if (!calls.is_idle_by(limits.deadline))
        return visa::error_timeout;
    given_up_at = limits.given_up_at;
    calls.start([this, job, deadline = limits.deadline] {
        int error = needs_recovery ? recover() : 0;
        if (error == 0)
            error = set_timeout(node.get(), deadline);
        if (error == 0)
            error = in_time();
        if (error != 0)
            return error;
        has_begun = true;
        error = job();
        // Nobody learns what came of it.
        if (in_time() != 0)
            recover();
        return error;
    });
    const std::optional<int> error = calls.result_by(given_up_at);
    const ViStatus status = status_of(error.value_or(ETIMEDOUT));
    is_lost = status == visa::error_connection_lost;
    // What never got through, behind another's call, has left nothing to clear but the other's.
    if ((status == visa::error_timeout || status == visa::error_io) && has_begun) {
        needs_recovery = true;
        if (error)
            calls.start([this] { return recover(); });
    }
    return status;
}

// What nobody waits for any longer is not begun: a message would switch a path unannounced. What
// waits inside the driver behind another program's call cannot be taken back.
int usb_link_t::in_time() const
{
    return io_clock_t::now() < given_up_at ? 0 : ETIMEDOUT;
}

int usb_link_t::send_piece(std::size_t size, bool end) const
{
    auto ends = static_cast<std::uint8_t>(end);
    if (const int error = control(node.get(), USBTMC_IOCTL_EOM_ENABLE, &ends))
        return error;
    if (const int error = in_time())
        return error;
    const auto sent = uninterrupted([&] { return ::write(node.get(), piece.data(), size); });
    if (sent < 0)
        return errno;
    return static_cast<std::size_t>(sent) == size ? 0 : EIO;
}

transfer_t usb_link_t::write(std::string_view data, bool end, deadline_t deadline)
{
    const limits_t limits = begin(deadline);
    transfer_t result;
    while (result.status == visa::success && result.count < data.size()) {
        const std::string_view rest = data.substr(result.count, piece_bytes);
        const bool is_last = result.count + rest.size() == data.size();
        // A late job may still use the piece.
        if (!calls.is_idle_by(limits.deadline)) {
            result.status = visa::error_timeout;
            break;
        }
        std::copy(rest.begin(), rest.end(), piece.begin());
        result.status = perform(
            [this, size = rest.size(), ends = end && is_last] { return send_piece(size, ends); },
            limits);
        if (result.status == visa::success)
            result.count += rest.size();
    }
    return result;
}

int usb_link_t::receive_piece(std::size_t size, bool is_first)
{
    const auto received = uninterrupted([&] { return ::read(node.get(), piece.data(), size); });
    if (received < 0)
        return errno;
    std::uint8_t attributes = 0;
    if (const int error = control(node.get(), USBTMC_IOCTL_MSG_IN_ATTR, &attributes))
        return error;
    piece_count = std::min(static_cast<std::size_t>(received), size);
    piece_ends = (attributes & end_of_message) != 0;
    // The driver reads nothing and succeeds when the instrument answers out of turn. What it tells
    // of the end is then still the transfer's before.
    return piece_count == 0 && (is_first || !piece_ends) ? EIO : 0;
}

ViStatus usb_link_t::set_term_char(int term_char, const limits_t &limits)
{
    if (term_char == set_char)
        return visa::success;
    set_char = unknown_char; // also when the driver takes it after the deadline
    const ViStatus status = perform(
        [this, term_char] {
            usbtmc_termchar setting{};
            setting.term_char = static_cast<std::uint8_t>(std::max(term_char, 0));
            setting.term_char_enabled = term_char >= 0 ? 1 : 0;
            return control(node.get(), USBTMC_IOCTL_CONFIG_TERMCHAR, &setting);
        },
        limits);
    if (status == visa::success)
        set_char = term_char;
    return status;
}

transfer_t usb_link_t::read(char *buffer, std::size_t size, int term_char, deadline_t deadline)
{
    const limits_t limits = begin(deadline);
    transfer_t result;
    // The instrument ends a transfer at the character, so that no byte behind it leaves it. One
    // that cannot is asked for one byte after the other, to the same effect.
    result.status = set_term_char(term_char, limits);
    const bool is_bytewise = result.status == visa::error_operation_not_supported;
    if (is_bytewise)
        result.status = visa::success;
    bool is_complete = false;
    while (result.status == visa::success && !is_complete && result.count < size) {
        const std::size_t wanted = is_bytewise ? 1 : std::min(size - result.count, piece_bytes);
        result.status =
            perform([this, wanted,
                     is_first = result.count == 0] { return receive_piece(wanted, is_first); },
                    limits);
        if (result.status != visa::success)
            break;
        std::copy_n(piece.begin(), piece_count, buffer + result.count);
        result.count += piece_count;
        result.end = piece_ends;
        is_complete =
            piece_ends || (term_char >= 0 && static_cast<unsigned char>(piece[piece_count - 1]) ==
                                                 static_cast<unsigned>(term_char));
    }
    return result;
}

ViStatus usb_link_t::clear(deadline_t deadline)
{
    return perform([this] { return control(node.get(), USBTMC_IOCTL_CLEAR); }, begin(deadline));
}

ViStatus usb_link_t::read_status_byte(ViUInt8 &status, deadline_t deadline)
{
    const ViStatus result =
        perform([this] { return control(node.get(), USBTMC488_IOCTL_READ_STB, &status_byte); },
                begin(deadline));
    if (result == visa::success)
        status = status_byte;
    return result;
}

ViStatus usb_link_t::trigger(deadline_t deadline)
{
    return perform([this] { return control(node.get(), USBTMC488_IOCTL_TRIGGER); },
                   begin(deadline));
}

} // namespace visa_io
