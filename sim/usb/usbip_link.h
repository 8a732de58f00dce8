// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sim::usb {

/// What a transfer has come to, in the kernel's numbers.
enum class urb_status_t : std::int32_t {
    done = 0,
    stalled = -32,   ///< the endpoint refuses
    unlinked = -104, ///< the host has taken the transfer back
};

/// The host's request for a transfer, or for taking one back.
struct urb_t
{
    bool takes_back = false;
    std::uint32_t number = 0;
    std::uint32_t taken_back = 0; ///< the number of the transfer that is to be taken back
    bool is_in = false;           ///< towards the host
    std::uint8_t endpoint = 0;    ///< without the direction
    std::size_t length = 0;       ///< bytes that the host gives or takes
    std::array<std::uint8_t, 8> setup{};
    std::string data; ///< what the host gives
};

/// The device's end of the stream on which the kernel's virtual host controller carries a device's
/// transfers (the kernel's Documentation/usb/usbip_protocol.rst).
class usbip_link_t
{
public:
    explicit usbip_link_t(int open_descriptor) : descriptor(open_descriptor) {}
    ~usbip_link_t();
    usbip_link_t(const usbip_link_t &) = delete;
    usbip_link_t &operator=(const usbip_link_t &) = delete;

    /// Whether the host has sent something, or has gone, within so many milliseconds.
    bool wait(int timeout_ms) const;

    /// The next request; nothing once the host has gone.
    std::optional<urb_t> receive();

    /// Ends a transfer. `data` is what the host gets of an inward one.
    void end(const urb_t &urb, urb_status_t status, std::string_view data = {});

    /// Answers that a transfer is taken back, or that it had ended before.
    void end_taken_back(const urb_t &urb, bool in_time);

private:
    bool receive(char *target, std::size_t count) const;
    void send(std::string_view bytes) const;

    int descriptor;
};

} // namespace sim::usb
