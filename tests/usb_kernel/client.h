// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace usb_kernel {

/// A user of a USB instrument. What goes wrong is thrown as
/// std::runtime_error.
class client_t
{
public:
    static constexpr std::chrono::milliseconds usual_time{3000};

    /// The names that a search gives.
    static std::vector<std::string> search();

    /// Connects to an instrument as soon as it is there.
    explicit client_t(const std::string &name);

    visa_io::transfer_t write(std::string_view bytes) const;
    visa_io::transfer_t read(std::string &bytes, std::size_t most = 20'000,
                             std::chrono::milliseconds time = usual_time) const;
    ViStatus clear() const { return link->clear(until(usual_time)); }

    /// The reply, which has to be whole and in time.
    std::string query(std::string_view message, std::chrono::milliseconds time = usual_time) const;

private:
    static visa_io::deadline_t until(std::chrono::milliseconds time)
    {
        return visa_io::io_clock_t::now() + time;
    }

    std::unique_ptr<visa_io::device_link_t> link;
};

/// Waits until something is so.
void wait_until(const char *what, const std::function<bool()> &is_so);

void expect(bool is_so, const std::string &what);
void expect_status(ViStatus status, ViStatus expected, const std::string &what);

} // namespace usb_kernel
