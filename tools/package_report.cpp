// SPDX-License-Identifier: MIT
#include "tools/package_report.h"

#include <nlohmann/json.hpp>

#include <sstream>

namespace {

std::string kind_name(const segment_record_t &record)
{
    const segment_kind_t *const kind = find_segment_kind(record.kind());
    return kind != nullptr ? std::string(kind->name) : "unknown";
}

} // namespace

std::string report_as_text(const package_report_t &report)
{
    std::ostringstream text;
    text << "file bytes: " << report.file_bytes << '\n'
         << "magic: " << (report.has_magic ? "right" : "wrong") << '\n';
    if (report.has_magic) {
        text << "product id: " << report.product_id << '\n'
             << "end offset: " << report.end_offset << '\n'
             << "segments: " << report.segments.size() << '\n';
    }
    for (const segment_report_t &segment : report.segments) {
        text << "segment: type " << segment.record.type << " (" << kind_name(segment.record)
             << "), record " << segment.record_offset << ", offset " << segment.record.data_offset
             << ", length " << segment.record.data_length << ", sha256 "
             << (segment.sha256.empty() ? "-" : segment.sha256) << '\n';
    }
    for (const finding_t &finding : report.findings)
        text << "finding: " << finding.kind << ": " << finding.text << '\n';
    return text.str();
}

std::string report_as_json(const package_report_t &report)
{
    using nlohmann::ordered_json;
    ordered_json document{{"file_bytes", report.file_bytes}, {"magic", report.has_magic}};
    if (report.has_magic) {
        document["product_id"] = report.product_id;
        document["end_offset"] = report.end_offset;
    }
    document["segments"] = ordered_json::array();
    for (const segment_report_t &segment : report.segments) {
        document["segments"].push_back(
            {{"type", segment.record.type},
             {"name", kind_name(segment.record)},
             {"record", segment.record_offset},
             {"offset", segment.record.data_offset},
             {"length", segment.record.data_length},
             {"sha256", segment.sha256.empty() ? ordered_json() : ordered_json(segment.sha256)}});
    }
    document["findings"] = ordered_json::array();
    for (const finding_t &finding : report.findings)
        document["findings"].push_back({{"kind", finding.kind}, {"text", finding.text}});
    return document.dump(2) + '\n';
}
