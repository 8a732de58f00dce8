// SPDX-License-Identifier: MIT
#include "tools/package_commands.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

/// What the command line asks for.
struct request_t
{
    std::string manifest;
    std::string package;
    std::string reply;
    bool as_json = false;
    std::function<int()> command;
};

void add_commands(CLI::App &app, request_t &request)
{
    CLI::App *const create = app.add_subcommand("create", "Make a package");
    create->add_option("MANIFEST", request.manifest, "JSON file that lists the segments")
        ->required();
    create->add_option("OUT", request.package, "The package to write")->required();
    create->callback([&request] {
        request.command = [&request] { return create_package(request.manifest, request.package); };
    });

    CLI::App *const inspect = app.add_subcommand("inspect", "Print what a package holds");
    inspect->add_option("FILE", request.package, "The package")->required();
    inspect->add_flag("--json", request.as_json, "Print JSON");
    inspect->callback([&request] {
        request.command = [&request] { return inspect_package(request.package, request.as_json); };
    });

    CLI::App *const check = app.add_subcommand("check", "Tell whether an instrument accepts it");
    check->add_option("FILE", request.package, "The package")->required();
    check->add_option("--accept", request.reply, "The instrument's reply to \"UPGRADE:ID?\"")
        ->required()
        ->type_name("A,B,C,D");
    check->callback([&request] {
        request.command = [&request] { return check_package(request.package, request.reply); };
    });
}

/// The arguments in UTF-8, the last one first, as the parser takes them.
template <typename character_t>
std::vector<std::string> reversed_arguments(int count, character_t **arguments)
{
    std::vector<std::string> reversed;
    while (--count > 0)
        reversed.push_back(std::filesystem::path(arguments[count]).u8string());
    return reversed;
}

int run(CLI::App &app, std::vector<std::string> reversed, const request_t &request)
{
    try {
        app.parse(std::move(reversed));
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? exit_status::good : exit_status::trouble;
    }
    return request.command();
}

/// The status, once all output is out.
int written(int status)
{
    if (!std::cout.flush())
        throw std::runtime_error("the output cannot be written");
    return status;
}

} // namespace

#ifdef _WIN32
int wmain(int count, wchar_t **arguments)
#else
int main(int count, char **arguments)
#endif
{
    CLI::App app("Makes and examines Corvane firmware packages (.ADS)", "corvane-package");
    app.require_subcommand(1);
    app.set_version_flag("--version", "corvane-package " CORVANE_VERSION);
    request_t request;
    add_commands(app, request);
    try {
        return written(run(app, reversed_arguments(count, arguments), request));
    } catch (const std::exception &error) {
        std::cerr << "corvane-package: " << error.what() << '\n';
        return exit_status::trouble;
    }
}
