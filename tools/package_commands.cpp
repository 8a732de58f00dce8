// SPDX-License-Identifier: MIT
#include "tools/package_commands.h"

#include "tools/package_inspector.h"
#include "tools/package_manifest.h"
#include "tools/package_writer.h"
#include "upgrade/accepted_id.h"
#include "upgrade/package_reader.h"

#include <QStringList>

#include <iostream>
#include <iterator>
#include <stdexcept>

namespace {

upgrade_id_t accepted_ids(const std::string &reply)
{
    const QStringList fields = QString::fromStdString(reply).split(QLatin1Char(','));
    upgrade_id_t ids;
    int *const places[] = {&ids.id, &ids.lowest, &ids.highest, &ids.exact};
    bool valid = fields.size() == static_cast<int>(std::size(places));
    for (int index = 0; valid && index < fields.size(); ++index)
        *places[index] = fields[index].toInt(&valid);
    if (!valid)
        throw std::runtime_error("\"" + reply + "\" is not four integers, separated by commas");
    return ids;
}

std::string accepted_text(const upgrade_id_t &ids)
{
    if (ids.exact != 0)
        return "only " + std::to_string(ids.id);
    return std::to_string(ids.lowest) + " to " + std::to_string(ids.highest);
}

} // namespace

int create_package(const std::string &manifest, const std::string &package)
{
    const QString path = QString::fromStdString(package);
    write_package(read_manifest(QString::fromStdString(manifest)), path);
    for (const finding_t &finding : package_inspector_t(path).inspect().findings)
        std::cerr << package << ": warning: " << finding.text << '\n';
    return exit_status::good;
}

int inspect_package(const std::string &package, bool as_json)
{
    const package_report_t report = package_inspector_t(QString::fromStdString(package)).inspect();
    std::cout << (as_json ? report_as_json(report) : report_as_text(report));
    return report.findings.empty() ? exit_status::good : exit_status::objection;
}

int check_package(const std::string &package, const std::string &reply)
{
    const upgrade_id_t ids = accepted_ids(reply);
    const std::string name = readable_package_name(QString::fromStdString(package));
    set_accepted_ids(ids);
    upgrade_header_t header{};
    const bool accepted = read_upgrade_header(name, header);
    if (!header_has_magic(header)) {
        std::cout << "refused: this is no firmware package, or its header is damaged\n";
        return exit_status::objection;
    }
    std::cout << (accepted ? "accepted" : "refused") << ": product id " << header_product_id(header)
              << ", the instrument accepts " << accepted_text(ids) << '\n';
    return accepted ? exit_status::good : exit_status::objection;
}
