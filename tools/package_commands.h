// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// The exit statuses of corvane-package.
namespace exit_status {
constexpr int good = 0;
constexpr int objection = 1; ///< a refusal, or findings
constexpr int trouble = 2;   ///< nothing could be said: wrong usage, a file that cannot be read
} // namespace exit_status

/// The commands of corvane-package. Texts are UTF-8. Each prints its result and returns an exit
/// status; it throws std::exception, with a text for the user, for trouble.

/// Makes a package of what a manifest lists; findings about it are printed as warnings.
int create_package(const std::string &manifest, const std::string &package);
/// Prints what a package holds; findings are an objection.
int inspect_package(const std::string &package, bool as_json);
/// Tells whether an instrument accepts a package. `reply` is what the instrument answers to
/// "UPGRADE:ID?": taken as Corvane takes it.
int check_package(const std::string &package, const std::string &reply);
