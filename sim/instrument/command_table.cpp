// SPDX-License-Identifier: MIT
#include "sim/instrument/command_table.h"

#include "sim/instrument/common_commands.h"
#include "sim/instrument/device_commands.h"
#include "sim/instrument/scpi_header.h"
#include "sim/instrument/upgrade_commands.h"

#include <algorithm>

namespace sim {

const command_t *find_command(std::string_view header, instrument_mode_t mode)
{
    const std::uint8_t mode_bit = in_modes({mode});
    for (const auto *commands : {&common_commands(), &device_commands(), &upgrade_commands()}) {
        const auto row =
            std::find_if(commands->begin(), commands->end(), [&](const command_t &command) {
                return (command.modes & mode_bit) != 0 && header_matches(command.pattern, header);
            });
        if (row != commands->end())
            return &*row;
    }
    return nullptr;
}

const raw_command_t *find_raw_command(std::string_view header)
{
    const auto &commands = raw_commands();
    const auto row =
        std::find_if(commands.begin(), commands.end(), [header](const raw_command_t &command) {
            return header_matches(command.pattern, header);
        });
    return row == commands.end() ? nullptr : &*row;
}

bool begins_with_command(std::string_view text)
{
    const auto begins_it = [text](const auto &command) {
        return text.substr(0, command.pattern.size()) == command.pattern;
    };
    for (const auto *commands : {&common_commands(), &device_commands(), &upgrade_commands()})
        if (std::any_of(commands->begin(), commands->end(), begins_it))
            return true;
    return std::any_of(raw_commands().begin(), raw_commands().end(), begins_it);
}

} // namespace sim
