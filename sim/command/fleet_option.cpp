// SPDX-License-Identifier: MIT
#include "sim/command/fleet_option.h"

#include "sim/bus/fleet_json.h"

namespace sim::command {

void add_fleet_option(CLI::App &command, std::string &path)
{
    command.add_option("--fleet", path, "Fleet file; the built-in fleet without it")
        ->envname("CORVANE_SIM_FLEET");
}

fleet_t read_fleet(const std::string &path)
{
    try {
        return path.empty() ? default_fleet() : read_fleet_file(path);
    } catch (const fleet_error_t &error) {
        throw fleet_error_t("fleet file \"" + path + "\": " + error.what());
    }
}

} // namespace sim::command
