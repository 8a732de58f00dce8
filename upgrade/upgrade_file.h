// SPDX-License-Identifier: MIT
#pragma once

#include "upgrade/package_name.h"

#include <filesystem>
#include <string>

class QString;

/// The narrow name of a path as Qt holds it.
std::string to_package_name(const QString &path);

/// The path that a narrow name stands for, as the platform opens it. Everything that reads packages
/// takes this path.
std::filesystem::path to_file_path(const std::string &package_name);

/// The narrow name of the package that the next upgrade transfers, one for the process.
/// Thread-safe: an upgrade that runs has its own copy.
void set_upgrade_file_name(const std::string &package_name);
std::string upgrade_file_name();
