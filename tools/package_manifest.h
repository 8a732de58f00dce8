// SPDX-License-Identifier: MIT
#pragma once

#include "upgrade/package_format.h"

#include <cstdint>
#include <filesystem>
#include <vector>

/// A segment that is to go into a package: its kind and the file with its payload.
struct planned_segment_t
{
    const segment_kind_t *kind;
    std::filesystem::path payload_path;
    std::uint32_t payload_bytes;
};

/// What is to go into a package.
struct package_plan_t
{
    std::int32_t product_id;
    std::vector<planned_segment_t> segments;
};

/// Reads a manifest, a JSON text in UTF-8. Payload files are relative to the manifest's folder.
/// Throws std::exception, with a text for the user, for anything that would not make a package
/// that the instrument takes.
package_plan_t read_manifest(const std::filesystem::path &path);
