// SPDX-License-Identifier: MIT
#include "tools/package_inspector.h"

#include "tools/readable_file.h"
#include "tools/sha256.h"
#include "tools/text_mode.h"
#include "upgrade/package_name.h"
#include "upgrade/package_reader.h"
#include "upgrade/segment_chain.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>

namespace {

/// Bytes of the file that something claims.
struct extent_t
{
    std::uint64_t begin;
    std::uint64_t end;
    std::string owner;
};

std::vector<extent_t> claimed_extents(const std::vector<segment_report_t> &segments)
{
    std::vector<extent_t> extents{{0, upgrade_header_bytes, "header"}};
    for (std::size_t index = 0; index < segments.size(); ++index) {
        const segment_report_t &segment = segments[index];
        const std::string number = std::to_string(index + 1);
        const std::uint64_t payload = segment.record.data_offset;
        extents.push_back({segment.record_offset, segment.record_offset + segment_record_bytes,
                           "record " + number});
        if (segment.record.data_length != 0)
            extents.push_back({payload, payload + segment.record.data_length, "payload " + number});
    }
    return extents;
}

const char *break_text(chain_step_t step)
{
    return step == chain_step_t::missing ? "the file has no segment record at offset "
                                         : "the chain returns to the segment record at offset ";
}

} // namespace

std::filesystem::path package_path(const std::filesystem::path &path)
{
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error).lexically_normal();
    if (to_package_name(absolute.u8string()).empty()) {
        throw std::runtime_error(absolute.u8string() +
                                 ": Corvane cannot open it, GB2312 lacks a character of its path");
    }
    return absolute;
}

std::filesystem::path readable_package(const std::filesystem::path &path)
{
    open_to_read(path);
    return package_path(path);
}

package_inspector_t::package_inspector_t(const std::filesystem::path &path)
    : file(readable_package(path))
{
}

package_report_t package_inspector_t::inspect()
{
    report = {};
    digested_bytes = 0;
    report.file_bytes = std::filesystem::file_size(file);
    read_header();
    if (report.has_magic) {
        walk_segments();
        find_overlaps();
    }
    return report;
}

void package_inspector_t::read_header()
{
    upgrade_header_t header{};
    read_upgrade_header(file, header);
    report.has_magic = header_has_magic(header);
    if (!report.has_magic) {
        add_finding("header", "this is no firmware package, or its header is damaged");
        return;
    }
    report.product_id = header_product_id(header);
    report.end_offset = header_end_offset(header);
    find_text_mode_hazard(0, upgrade_header_bytes, "the header");
    if (report.end_offset > report.file_bytes) {
        add_finding("end", "the end offset is behind the end of the file");
    } else if (report.end_offset < report.file_bytes) {
        add_finding("trailing", std::to_string(report.file_bytes - report.end_offset) +
                                    " bytes follow the end offset");
    }
}

void package_inspector_t::walk_segments()
{
    segment_chain_t chain(file, report.end_offset);
    chain_step_t step = chain.next();
    for (; step == chain_step_t::segment; step = chain.next()) {
        if (report.segments.size() == most_segments) {
            add_finding("chain", "more than " + std::to_string(most_segments) +
                                     " segments; the others were not looked at");
            return;
        }
        examine_segment(chain.record_offset(), chain.record());
    }
    if (step != chain_step_t::complete) {
        add_finding("chain", break_text(step) + std::to_string(chain.record_offset()) +
                                 "; the end offset was not met");
    }
}

void package_inspector_t::examine_segment(std::uint64_t record_offset,
                                          const segment_record_t &record)
{
    const std::string number = std::to_string(report.segments.size() + 1);
    const segment_kind_t *const kind = find_segment_kind(record.kind());
    if (record.data_length == 0)
        add_finding("empty", "segment " + number + " is empty; nothing is sent for it");
    else if (kind == nullptr)
        add_finding("type", "segment " + number + " is of no known type");
    else if (!payload_fits(*kind, record.data_length))
        add_finding("length", "payload " + number + " is too long for its command");
    const bool held = file_holds(file, record.data_offset, record.data_length);
    if (!held)
        add_finding("payload", "the file does not hold all of payload " + number);
    find_text_mode_hazard(record_offset, segment_record_bytes, "record " + number);
    report.segments.push_back({record_offset, record, held ? digest(record) : std::string()});
}

std::string package_inspector_t::digest(const segment_record_t &record)
{
    digested_bytes += record.data_length;
    if (digested_bytes > most_digested_share * report.file_bytes)
        return {};
    return sha256_of(file, record.data_offset, record.data_length);
}

/// Names each extent that begins inside of an earlier one, together with the one that reaches
/// furthest.
void package_inspector_t::find_overlaps()
{
    std::vector<extent_t> extents = claimed_extents(report.segments);
    std::stable_sort(
        extents.begin(), extents.end(),
        [](const extent_t &left, const extent_t &right) { return left.begin < right.begin; });
    const extent_t *furthest = &extents.front();
    for (std::size_t index = 1; index < extents.size(); ++index) {
        const extent_t &extent = extents[index];
        if (extent.begin < furthest->end)
            add_finding("overlap", extent.owner + " overlaps " + furthest->owner);
        if (extent.end > furthest->end)
            furthest = &extent;
    }
}

void package_inspector_t::find_text_mode_hazard(std::uint64_t offset, std::size_t size,
                                                const std::string &what)
{
    std::vector<std::uint8_t> bytes(size);
    if (read_payload(file, offset, reinterpret_cast<char *>(bytes.data()), size) &&
        !survives_text_mode(bytes.data(), size))
        add_finding("text-mode", what + " holds a Ctrl-Z or CR LF; Windows misreads it");
}

void package_inspector_t::add_finding(const char *kind, const std::string &text)
{
    report.findings.push_back({kind, text});
}
