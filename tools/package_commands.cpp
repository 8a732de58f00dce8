// SPDX-License-Identifier: MIT
#include "tools/package_commands.h"

#include "drv/reply_text.h"
#include "tools/output_place.h"
#include "tools/package_inspector.h"
#include "tools/package_manifest.h"
#include "tools/package_writer.h"
#include "upgrade/accepted_id.h"
#include "upgrade/package_reader.h"

#include <filesystem>
#include <iostream>

namespace {

std::string accepted_text(const upgrade_id_t &ids)
{
    if (ids.exact != 0)
        return "only " + std::to_string(ids.id);
    return std::to_string(ids.lowest) + " to " + std::to_string(ids.highest);
}

} // namespace

int create_package(const std::string &manifest, const std::string &package)
{
    const std::filesystem::path path = std::filesystem::u8path(package);
    const std::filesystem::path manifest_path = std::filesystem::u8path(manifest);
    const package_plan_t plan = read_manifest(manifest_path);
    check_output_place(path, manifest_path, plan);
    write_package(plan, path);
    for (const finding_t &finding : package_inspector_t(path).inspect().findings)
        std::cerr << package << ": warning: " << finding.text << '\n';
    return exit_status::good;
}

int inspect_package(const std::string &package, bool as_json)
{
    const package_report_t report = package_inspector_t(std::filesystem::u8path(package)).inspect();
    std::cout << (as_json ? report_as_json(report) : report_as_text(report));
    return report.findings.empty() ? exit_status::good : exit_status::objection;
}

int check_package(const std::string &package, const std::string &reply)
{
    upgrade_id_t ids = accepts_nothing;
    read_upgrade_id(reply, ids);
    const std::filesystem::path file = readable_package(std::filesystem::u8path(package));
    set_accepted_ids(ids);
    upgrade_header_t header{};
    const bool accepted = read_upgrade_header(file, header);
    if (!header_has_magic(header)) {
        std::cout << "refused: this is no firmware package, or its header is damaged\n";
        return exit_status::objection;
    }
    std::cout << (accepted ? "accepted" : "refused") << ": product id " << header_product_id(header)
              << ", the instrument accepts " << accepted_text(ids) << '\n';
    return accepted ? exit_status::good : exit_status::objection;
}
