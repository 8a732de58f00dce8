// SPDX-License-Identifier: MIT
#include "sim/instrument/status_registers.h"

#include <array>
#include <cstddef>

namespace sim {

namespace {

// The event bit for the errors -1xx, -2xx, -3xx and -4xx.
constexpr std::array<std::uint8_t, 5> error_class_bits{0, 0x20, 0x10, 0x08, 0x04};

constexpr std::uint8_t error_waiting_bit = 0x04;
constexpr std::uint8_t reply_waiting_bit = 0x10;
constexpr std::uint8_t event_summary_bit = 0x20;
constexpr std::uint8_t service_request_bit = 0x40;

std::uint8_t bit_if(bool condition, std::uint8_t bit)
{
    return condition ? bit : std::uint8_t{0};
}

} // namespace

void status_registers_t::note_error(scpi_error_t error)
{
    const auto error_class = static_cast<std::size_t>(-static_cast<int>(error) / 100);
    events |= error_class_bits.at(error_class);
}

std::uint8_t status_registers_t::take_events()
{
    const std::uint8_t result = events;
    events = 0;
    return result;
}

std::uint8_t status_registers_t::status_byte(bool error_waiting, bool reply_waiting) const
{
    std::uint8_t byte = 0;
    byte |= bit_if(error_waiting, error_waiting_bit);
    byte |= bit_if(reply_waiting, reply_waiting_bit);
    byte |= bit_if((events & event_enable) != 0, event_summary_bit);
    byte |= bit_if((byte & service_enable) != 0, service_request_bit);
    return byte;
}

} // namespace sim
