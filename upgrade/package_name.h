// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Packages go by a narrow name, the user's path in GB2312 (GB/T 2312-1980), whatever the
/// platform's own encoding is. What GB2312 lacks and its extension GBK has counts as part of it.
/// Paths are in UTF-8 here.

/// The narrow name of a path, up to its first zero; empty for a path that GB2312 cannot hold.
std::string to_package_name(const std::string &path);

/// The path that a narrow name stands for; empty for bytes that are no name.
std::string to_package_path(const std::string &package_name);
