// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/instrument_config.h"
#include "sim/instrument/instrument_state.h"
#include "sim/instrument/scpi_error.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// What an instrument does after a message.
struct instrument_outcome_t
{
    std::optional<std::string> reply; ///< with its "\n"; nothing when there is no answer
    instrument_effect_t effect = instrument_effect_t::none;
};

/// One simulated instrument: program messages in, replies out. It knows no time and no bus;
/// whoever carries the messages does what the outcome's effect asks for. Not synchronised.
class sim_instrument_t
{
public:
    explicit sim_instrument_t(const instrument_config_t &config) : state(config) {}

    /// Executes one complete program message, with or without a line end.
    ///
    /// Errors go to the error queue. After a command error the rest of the message is
    /// dropped; after an execution error it goes on. A firmware block or device parameter
    /// takes the whole message, its bytes are not read as text.
    instrument_outcome_t receive(std::string_view message);

    /// Queues an error that the carrier of the messages has seen: -410 or -420.
    void note_query_error(scpi_error_t error) { state.note_error(error); }

    /// The status byte of IEEE 488.2, chapter 11; whoever carries the messages knows of replies.
    std::uint8_t status_byte(bool reply_waiting) const
    {
        return state.status.status_byte(!state.errors.empty(), reply_waiting);
    }

    void misbehave(const upgrade_misbehaviour_t &plan) { state.firmware.misbehave(plan); }

    const instrument_state_t &inspect() const { return state; }

private:
    bool execute_raw(std::string_view message);
    void execute_text(std::string_view message, std::string &replies);

    instrument_state_t state;
};

} // namespace sim
