// SPDX-License-Identifier: MIT
#include "tools/output_place.h"

#include "tools/package_inspector.h"
#include "upgrade/upgrade_file.h"

#include <QFileInfo>

#include <filesystem>
#include <stdexcept>

namespace {

bool is_same_file(const QString &one, const QString &other)
{
    std::error_code error;
    return std::filesystem::equivalent(to_path(one), to_path(other), error);
}

} // namespace

void check_output_place(const QString &package, const QString &manifest, const package_plan_t &plan)
{
    const auto refuse = [&package](const char *reason) {
        throw std::runtime_error(package.toStdString() + ": cannot be written: " + reason);
    };
    package_path(package);
    const QFileInfo info(package);
    if ((info.exists() || info.isSymLink()) && !info.isFile())
        refuse("not a regular file");
    if (is_same_file(package, manifest))
        refuse("it is the manifest");
    for (const planned_segment_t &segment : plan.segments)
        if (is_same_file(package, segment.payload_path))
            refuse("it is one of the payloads");
}
