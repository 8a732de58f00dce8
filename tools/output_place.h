// SPDX-License-Identifier: MIT
#pragma once

#include "tools/package_manifest.h"

#include <filesystem>

/// Refuses a place for a package before anything is written there: a path that Corvane cannot open,
/// something that is no regular file, the manifest, or a payload of the plan, under whatever name.
/// Throws std::exception with a text for the user.
void check_output_place(const std::filesystem::path &package, const std::filesystem::path &manifest,
                        const package_plan_t &plan);
