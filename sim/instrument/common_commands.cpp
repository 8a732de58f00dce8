// SPDX-License-Identifier: MIT
#include "sim/instrument/common_commands.h"

#include "sim/instrument/text_util.h"

namespace sim {

namespace {

using state_t = instrument_state_t;

constexpr std::uint8_t always =
    in_modes({instrument_mode_t::normal, instrument_mode_t::loader, instrument_mode_t::foreign});

command_result_t set_mask(std::uint8_t &mask, std::string_view text)
{
    const auto number = decimal_number(text);
    if (!number)
        return outcome(scpi_error_t::illegal_parameter_value);
    if (*number > 255)
        return outcome(scpi_error_t::data_out_of_range);
    mask = static_cast<std::uint8_t>(*number);
    return done();
}

command_result_t clear_status(state_t &state, const arguments_t & /*arguments*/)
{
    state.errors.clear();
    state.status.clear_events();
    return done();
}

command_result_t reset(state_t &state, const arguments_t & /*arguments*/)
{
    state.routes.clear();
    return done();
}

command_result_t operation_complete(state_t &state, const arguments_t & /*arguments*/)
{
    state.status.note_operation_complete();
    return done();
}

command_result_t status_byte(state_t &state, const arguments_t & /*arguments*/)
{
    return answer(
        std::to_string(state.status.status_byte(!state.errors.empty(), state.reply_waiting)));
}

} // namespace

const std::vector<command_t> &common_commands()
{
    static const std::vector<command_t> commands{
        {"*IDN?", always, 0, 0,
         [](state_t &state, const arguments_t &) { return answer(state.identification()); }},
        {"*OPC?", always, 0, 0, [](state_t &, const arguments_t &) { return answer("1"); }},
        {"*OPC", always, 0, 0, operation_complete},
        {"*RST", always, 0, 0, reset},
        {"*CLS", always, 0, 0, clear_status},
        {"*ESR?", always, 0, 0,
         [](state_t &state, const arguments_t &) {
             return answer(std::to_string(state.status.take_events()));
         }},
        {"*ESE", always, 1, 1,
         [](state_t &state, const arguments_t &arguments) {
             return set_mask(state.status.event_enable, arguments[0]);
         }},
        {"*ESE?", always, 0, 0,
         [](state_t &state, const arguments_t &) {
             return answer(std::to_string(state.status.event_enable));
         }},
        {"*SRE", always, 1, 1,
         [](state_t &state, const arguments_t &arguments) {
             return set_mask(state.status.service_enable, arguments[0]);
         }},
        {"*SRE?", always, 0, 0,
         [](state_t &state, const arguments_t &) {
             return answer(std::to_string(state.status.service_enable));
         }},
        {"*STB?", always, 0, 0, status_byte},
        {"*TST?", always, 0, 0, [](state_t &, const arguments_t &) { return answer("0"); }},
        {"*WAI", always, 0, 0, [](state_t &, const arguments_t &) { return done(); }},
        {"SYSTem:ERRor[:NEXT]?", always, 0, 0,
         [](state_t &state, const arguments_t &) { return answer(state.errors.take()); }},
    };
    return commands;
}

} // namespace sim
