// SPDX-License-Identifier: MIT
#include "sim/command/serial_command.h"
#ifdef CORVANE_SIM_LAN
#include "sim/command/lan_command.h"
#endif

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

int main(int argc, char **argv)
{
    CLI::App app("Simulated TMX switch matrices", "corvane-sim");
    app.require_subcommand(1);
    sim::command::add_serial_command(app);
#ifdef CORVANE_SIM_LAN
    sim::command::add_lan_command(app);
#endif
    try {
        app.parse(argc, argv);
        return 0;
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : 1;
    } catch (const std::exception &error) {
        std::cerr << "corvane-sim: " << error.what() << '\n';
        return 1;
    }
}
