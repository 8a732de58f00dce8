// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/scpi_error.h"

#include <cstdint>

namespace sim {

/// The event status register, its enable mask and the service request mask of
/// IEEE 488.2, chapter 11.
class status_registers_t
{
public:
    static constexpr std::uint8_t operation_complete_bit = 0x01;
    static constexpr std::uint8_t power_on_bit = 0x80;

    /// Sets the event bit that belongs to the error's class.
    void note_error(scpi_error_t error);

    /// Sets the operation complete bit, as "*OPC" does.
    void note_operation_complete() { events |= operation_complete_bit; }

    /// Reads the event register and clears it, as "*ESR?" does.
    std::uint8_t take_events();

    /// The status byte as "*STB?" reports it; the two flags say what waits in the queues.
    std::uint8_t status_byte(bool error_waiting, bool reply_waiting) const;

    void clear_events() { events = 0; }

    std::uint8_t event_enable = 0;
    std::uint8_t service_enable = 0;

private:
    std::uint8_t events = power_on_bit;
};

} // namespace sim
