// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

class QString;

/// Packages go by a narrow name, the user's path in GB2312 (GB/T 2312-1980), whatever the
/// platform's own encoding is.

/// The narrow name of a path, up to its first zero; empty for a path that GB2312 cannot hold.
std::string to_package_name(const QString &path);

/// A path as the platform opens it.
std::filesystem::path to_path(const QString &path);

/// The path that a narrow name stands for, as the platform opens it. Everything that reads packages
/// takes this path.
std::filesystem::path to_file_path(const std::string &package_name);

/// The narrow name of the package that the next upgrade transfers, one for the process.
/// Thread-safe: an upgrade that runs has its own copy.
void set_upgrade_file_name(const std::string &package_name);
std::string upgrade_file_name();
