// SPDX-License-Identifier: MIT
#pragma once

#include "drv/visa_types.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

/// What `drv_visa_t::visa_init` and `usb_scan` answer.
namespace visa_result {
constexpr int done = 1;
constexpr int not_available = 100;
constexpr int nothing_found = 101;
} // namespace visa_result

/// The VISA default resource manager, and one operation for each call on a given session.
///
/// Everything here is a thin layer over the library (VPP-4.3): a `ViStatus` is the library's own,
/// a `bool` is true for the status 0 only, so that a warning counts as failure.
class drv_visa_t
{
public:
    /// The pause after every write, whatever its outcome.
    static constexpr unsigned long write_pause_ms = 5;
    /// How long one `viOpen` may take.
    static constexpr ViUInt32 open_timeout_ms = 200;

    drv_visa_t(const drv_visa_t &) = delete;
    drv_visa_t &operator=(const drv_visa_t &) = delete;

    /// Loads the library and opens the default resource manager. Answers `visa_result::done`, or
    /// `visa_result::not_available` when either fails.
    virtual int visa_init();
    /// True once the default resource manager is open.
    bool visa_is_ready() const noexcept;

    /// Lists the USB instruments in the library's order. Appends their resource strings to `list`
    /// and answers `visa_result::done`; with none, `count` is 0 and the answer is
    /// `visa_result::nothing_found`. Every maker's instruments are listed.
    int usb_scan(std::vector<std::string> &list, int &count);

    /// Opens the resource into `session`, which a failure leaves alone.
    ViStatus session_open(const std::string &resource, ViSession &session);
    /// Writes exactly `length` bytes, then pauses `write_pause_ms`.
    ViStatus session_write_status(ViSession session, const char *bytes, std::size_t length);
    bool session_write(ViSession session, const char *bytes, std::size_t length);
    ViStatus session_read_status(ViSession session, char *buffer, std::size_t size);
    /// Reads at most `size` bytes; a reply that fills the buffer without ending counts as failed.
    bool session_read(ViSession session, char *buffer, std::size_t size);
    ViStatus session_close(ViSession session);
    /// Closes the session and then the default resource manager; true when their statuses add up
    /// to 0.
    bool session_close_with_manager(ViSession session);
    ViStatus session_clear(ViSession session);
    ViStatus set_session_timeout(ViSession session, ViUInt32 timeout_ms);
    /// The session's I/O time-out in milliseconds, 0 when it cannot be read.
    ViUInt32 session_timeout(ViSession session);
    /// Opens the default resource manager once more, without closing the one in use. The status is
    /// not looked at: the manager is then whatever the library answered, after a failure usually
    /// none.
    void reopen_default_rm();

    /// Searches for USB instruments (`viFindRsrc`) and keeps the first one's resource string.
    ViStatus find_usb();
    /// Keeps the next one's resource string (`viFindNext`).
    ViStatus find_next();
    /// The resource string that the last search or step delivered.
    std::string found_resource() const;

protected:
    drv_visa_t() = default;
    ~drv_visa_t() = default;

private:
    ViSession default_rm = 0;
    ViStatus last_status = vi_success;
    ViUInt32 find_count = 0;
    ViFindList find_list = 0;
    std::array<char, vi_find_buflen> description{};
    bool ready = false;
};
