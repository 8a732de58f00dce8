// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace sim::usb {

/// The request of a control transfer (USB 2.0, chapter 9.3).
struct usb_setup_t
{
    explicit usb_setup_t(const std::array<std::uint8_t, 8> &bytes)
        : type(bytes[0]),
          request(bytes[1]),
          value(word(bytes[2], bytes[3])),
          index(word(bytes[4], bytes[5])),
          length(word(bytes[6], bytes[7]))
    {
    }

    bool is_of_class() const { return (type & 0x60U) == 0x20U; }

    std::uint8_t type;
    std::uint8_t request;
    std::uint16_t value;
    std::uint16_t index;
    std::uint16_t length;

private:
    static std::uint16_t word(unsigned low, unsigned high)
    {
        return static_cast<std::uint16_t>(low | high << 8U);
    }
};

/// What a control request is answered with; nothing refuses it.
using usb_answer_t = std::optional<std::string>;

/// The number in `count` bytes, the lowest first.
inline std::string little_endian(std::size_t number, unsigned count)
{
    std::string bytes;
    for (unsigned byte = 0; byte < count; ++byte)
        bytes += static_cast<char>(number >> 8U * byte & 0xFFU);
    return bytes;
}

} // namespace sim::usb
