// SPDX-License-Identifier: MIT
#include "sim/instrument/sim_instrument.h"

#include "sim/instrument/command_table.h"
#include "sim/instrument/scpi_header.h"
#include "sim/instrument/scpi_message.h"

namespace sim {

namespace {

// The reboot commands may arrive with the zero byte that ends a C string.
std::string_view without_reboot_terminator(std::string_view message)
{
    const std::string_view text = message.substr(0, message.find('\0'));
    const bool ends_in_zero = text.size() + 1 == message.size();
    return ends_in_zero && header_matches("REBOOT", header_of(text)) ? text : message;
}

command_result_t execute(instrument_state_t &state, const message_unit_t &unit)
{
    if (unit.header.empty())
        return outcome(unit.error);
    const command_t *command = find_command(unit.header, state.mode);
    if (command == nullptr)
        return outcome(scpi_error_t::undefined_header);
    if (unit.arguments.size() > command->most_arguments)
        return outcome(scpi_error_t::parameter_not_allowed);
    if (unit.arguments.size() < command->fewest_arguments)
        return outcome(scpi_error_t::missing_parameter);
    if (unit.error != scpi_error_t::none)
        return outcome(unit.error);
    return command->run(state, unit.arguments);
}

} // namespace

instrument_outcome_t sim_instrument_t::receive(std::string_view message)
{
    state.effect = instrument_effect_t::none;
    instrument_outcome_t result;
    if (!execute_raw(message)) {
        std::string replies;
        execute_text(without_reboot_terminator(without_line_end(message)), replies);
        if (!replies.empty())
            result.reply = replies + "\n";
    }
    result.effect = state.effect;
    return result;
}

bool sim_instrument_t::execute_raw(std::string_view message)
{
    const std::string_view header = header_of(message);
    if (state.mode == instrument_mode_t::foreign || header.size() == message.size() ||
        message[header.size()] != ' ')
        return false;
    const raw_command_t *command = find_raw_command(header);
    if (command == nullptr)
        return false;
    const command_result_t result = command->run(state, message.substr(header.size() + 1));
    if (result.error != scpi_error_t::none)
        state.note_error(result.error);
    return true;
}

void sim_instrument_t::execute_text(std::string_view message, std::string &replies)
{
    scpi_message_t units(message);
    while (!units.at_end()) {
        state.reply_waiting = !replies.empty();
        const command_result_t result = execute(state, units.next());
        if (result.reply)
            replies.append(replies.empty() ? "" : ";").append(*result.reply);
        if (result.error != scpi_error_t::none)
            state.note_error(result.error);
        if (is_command_error(result.error) || state.effect != instrument_effect_t::none)
            return;
    }
}

} // namespace sim
