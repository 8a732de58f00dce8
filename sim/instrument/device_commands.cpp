// SPDX-License-Identifier: MIT
#include "sim/instrument/device_commands.h"

namespace sim {

namespace {

using state_t = instrument_state_t;
using args_t = arguments_t;

constexpr std::uint8_t normal = in_modes({instrument_mode_t::normal});
constexpr std::uint8_t any = in_modes({instrument_mode_t::normal, instrument_mode_t::loader});

command_result_t get_color(state_t &state, const args_t &args)
{
    const auto color = state.colors.color(args[0]);
    return color ? answer(*color) : outcome(scpi_error_t::illegal_parameter_value);
}

} // namespace

const std::vector<command_t> &device_commands()
{
    static const std::vector<command_t> commands{
        {"UPGRADE:ID?", any, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.upgrade_id); }},
        {"SHOW:SVERsion?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.identity.version); }},
        {"SHOW:MNAMe?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.identity.model); }},
        {"SHOW:SERial?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.identity.serial); }},
        {"SHOW:PRODect:ID?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.identity.product_id); }},
        {"SHOW:TEMPerature?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.temperature); }},

        {"SET:LAN:HOST:NAMe", normal, 1, 1,
         [](state_t &state, const args_t &args) {
             return outcome(state.lan.set_host_name(args[0]));
         }},
        {"SHOW:LAN:HOST:NAMe?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.lan.host_name()); }},
        {"SET:LAN:DHCP", normal, 1, 1,
         [](state_t &state, const args_t &args) { return outcome(state.lan.set_dhcp(args[0])); }},
        {"SHOW:LAN:DHCP?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.lan.dhcp() ? "1" : "0"); }},
        {"SET:LAN:IP", normal, 1, 1,
         [](state_t &state, const args_t &args) {
             return outcome(state.lan.set_address(args[0]));
         }},
        {"SHOW:LAN:IP?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.lan.in_use().address); }},
        {"SET:LAN:SNMask", normal, 1, 1,
         [](state_t &state, const args_t &args) { return outcome(state.lan.set_mask(args[0])); }},
        {"SHOW:LAN:SNMask?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.lan.in_use().mask); }},
        {"SET:LAN:GW", normal, 1, 1,
         [](state_t &state, const args_t &args) {
             return outcome(state.lan.set_gateway(args[0]));
         }},
        {"SHOW:LAN:GW?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.lan.in_use().gateway); }},
        {"SET:LAN:MAC:ADDRess", normal, 1, 1,
         [](state_t &state, const args_t &args) { return outcome(state.lan.set_mac(args[0])); }},
        {"SHOW:LAN:MAC:ADDRess?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.lan.mac()); }},

        {"ADD:ROUTe", normal, 1, 1,
         [](state_t &state, const args_t &args) { return outcome(state.routes.apply(args[0])); }},
        {"ROUTes?", normal, 0, 0,
         [](state_t &state, const args_t &) { return answer(state.routes.text()); }},
        {"SET:COLOR", normal, 2, 2,
         [](state_t &state, const args_t &args) {
             return outcome(state.colors.set(args[0], args[1]));
         }},
        {"GET:COLOR?", normal, 1, 1, get_color},
    };
    return commands;
}

} // namespace sim
