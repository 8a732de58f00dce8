// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace usb_kernel {

using test_clock_t = std::chrono::steady_clock;

/// A user of a USB instrument through our VISA library. What goes wrong is thrown as
/// std::runtime_error.
class client_t
{
public:
    static constexpr std::chrono::milliseconds usual_time{3000};

    /// The names that a search gives.
    static std::vector<std::string> search();

    /// Connects to an instrument as soon as it is there.
    explicit client_t(const std::string &name);
    ~client_t();
    client_t(const client_t &) = delete;
    client_t &operator=(const client_t &) = delete;

    ViStatus write(std::string_view bytes) const;
    ViStatus read(std::string &bytes, std::size_t most = 20'000,
                  std::chrono::milliseconds time = usual_time) const;
    ViStatus clear() const;

    /// The reply, which has to be whole and in time.
    std::string query(std::string_view message, std::chrono::milliseconds time = usual_time) const;

private:
    ViSession session = visa::null_object;
};

/// Opens an instrument in as little time as may be allowed.
ViStatus open_now(const std::string &name, ViSession &session);

/// Waits until something is so.
void wait_until(const char *what, const std::function<bool()> &is_so);

void expect(bool is_so, const std::string &what);
void expect_status(ViStatus status, ViStatus expected, const std::string &what);

} // namespace usb_kernel
