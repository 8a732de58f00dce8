// SPDX-License-Identifier: MIT
#include "sim/instrument/upgrade_commands.h"

#include "sim/instrument/scpi_message.h"
#include "sim/instrument/text_util.h"

#include <algorithm>

namespace sim {

namespace {

using state_t = instrument_state_t;
using args_t = arguments_t;

constexpr std::uint8_t normal = in_modes({instrument_mode_t::normal});
constexpr std::uint8_t any = in_modes({instrument_mode_t::normal, instrument_mode_t::loader});

constexpr std::size_t most_identity_characters = 32;

bool is_identity_text(std::string_view text)
{
    return !text.empty() && text.size() <= most_identity_characters &&
           std::all_of(text.begin(), text.end(), is_printable);
}

command_result_t announce(state_t &state, image_kind_t kind, std::string_view length)
{
    const auto bytes = decimal_number(length);
    if (!bytes) {
        state.firmware.fail();
        return outcome(scpi_error_t::illegal_parameter_value);
    }
    return outcome(state.firmware.announce(kind, static_cast<std::size_t>(*bytes)));
}

command_result_t announce_boot(state_t &state, const args_t &args)
{
    return announce(state, image_kind_t::boot, args[0]);
}

command_result_t announce_host(state_t &state, const args_t &args)
{
    if (state.mode == instrument_mode_t::loader)
        return announce(state, image_kind_t::host, args[0]);
    state.firmware.fail();
    return outcome(scpi_error_t::settings_conflict);
}

command_result_t reboot(state_t &state, const args_t &args)
{
    const bool to_loader = !args.empty() && args[0] == "1";
    if (!args.empty() && !to_loader)
        return outcome(scpi_error_t::illegal_parameter_value);
    state.restart(to_loader ? instrument_mode_t::loader : instrument_mode_t::normal);
    state.effect = instrument_effect_t::reboot;
    return done();
}

command_result_t set_serial(state_t &state, const args_t &args)
{
    if (!is_identity_text(args[0]))
        return outcome(scpi_error_t::illegal_parameter_value);
    state.provisioned.serial = args[0];
    return done();
}

command_result_t set_factory_defaults(state_t &state, const args_t & /*args*/)
{
    state.reset_to_factory();
    return done();
}

command_result_t accept_block(state_t &state, std::string_view block)
{
    const scpi_error_t error = state.firmware.accept_block(block);
    if (state.firmware.unplug_due())
        state.effect = instrument_effect_t::unplug;
    return outcome(error);
}

command_result_t keep_parameter(state_t &state, const char *name, std::string_view payload)
{
    if (payload.empty())
        return outcome(scpi_error_t::missing_parameter);
    state.firmware.keep_parameter(name, payload);
    return done();
}

command_result_t set_product(state_t &state, std::string_view payload)
{
    const std::string_view model = without_line_end(payload);
    if (is_identity_text(model))
        state.provisioned.model = model;
    return keep_parameter(state, "PRODUCTUG", payload);
}

command_result_t set_product_id(state_t &state, std::string_view payload)
{
    const std::string_view id = without_line_end(payload);
    if (id.size() == 2 && decimal_number(id))
        state.provisioned.product_id = id;
    return keep_parameter(state, "PRODUCTUG:ID", payload);
}

command_result_t set_manufacturer(state_t &state, std::string_view payload)
{
    return keep_parameter(state, "MANUFTRUG", payload);
}

command_result_t set_usb_product(state_t &state, std::string_view payload)
{
    return keep_parameter(state, "PIDUG", payload);
}

command_result_t set_usb_vendor(state_t &state, std::string_view payload)
{
    return keep_parameter(state, "VIDUG", payload);
}

} // namespace

const std::vector<command_t> &upgrade_commands()
{
    static const std::vector<command_t> commands{
        {"BOOTUG", any, 1, 1, announce_boot},
        {"HOSTUG", any, 1, 1, announce_host},
        {"UPREADY?", any, 0, 0,
         [](state_t &state, const args_t &) {
             return answer(state.firmware.poll_ready() ? "1" : "0");
         }},
        {"REBOOT", any, 0, 1, reboot},
        {"SYSTem:DEVice:DEFAULT", normal, 0, 0, set_factory_defaults},
        {"SYSTem:DEVice:SERIAL:NUM", normal, 1, 1, set_serial},
    };
    return commands;
}

const std::vector<raw_command_t> &raw_commands()
{
    static const std::vector<raw_command_t> commands{
        {"UPGRADE", accept_block},
        {"SYSTem:DEVice:PRODUCTUG", set_product},
        {"SYSTem:DEVice:MANUFTRUG", set_manufacturer},
        {"SYSTem:DEVice:PIDUG", set_usb_product},
        {"SYSTem:DEVice:VIDUG", set_usb_vendor},
        {"SYSTem:DEVice:PRODUCTUG:ID", set_product_id},
    };
    return commands;
}

} // namespace sim
