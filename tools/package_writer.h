// SPDX-License-Identifier: MIT
#pragma once

#include "tools/package_manifest.h"

#include <filesystem>

/// Writes a package: header, then each segment's record and payload without gaps. The same plan
/// and payloads always make the same bytes. The file appears, or replaces an older one, only when
/// it is complete. Throws std::exception with a text for the user.
void write_package(const package_plan_t &plan, const std::filesystem::path &path);
