// SPDX-License-Identifier: MIT
#include "tools/output_place.h"

#include "tools/package_inspector.h"

#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

void check_output_place(const fs::path &package, const fs::path &manifest,
                        const package_plan_t &plan)
{
    const auto refuse_if = [&package](bool refused, const char *reason) {
        if (refused)
            throw std::runtime_error(package.u8string() + ": cannot be written: " + reason);
    };
    std::error_code error;
    package_path(package);
    refuse_if(fs::exists(fs::symlink_status(package, error)) &&
                  !fs::is_regular_file(package, error),
              "not a regular file");
    refuse_if(fs::equivalent(package, manifest, error), "it is the manifest");
    for (const planned_segment_t &segment : plan.segments)
        refuse_if(fs::equivalent(package, segment.payload_path, error),
                  "it is one of the payloads");
}
