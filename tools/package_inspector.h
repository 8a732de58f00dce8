// SPDX-License-Identifier: MIT
#pragma once

#include "tools/package_report.h"

#include <filesystem>
#include <string>

/// The path under which Corvane opens a file: the absolute one, as a file dialog gives it. Throws
/// std::exception, with a text for the user, for one that Corvane cannot open.
std::filesystem::path package_path(const std::filesystem::path &path);

/// The same for a file that can be read. Throws for any other.
std::filesystem::path readable_package(const std::filesystem::path &path);

/// Examines a package that may hold anything, also for what Corvane itself does not check.
///
/// Time and memory are bounded by the size of the file, whatever the package says: only so many
/// segments are followed, and payloads that overlap again and again are not all digested.
class package_inspector_t
{
public:
    static constexpr std::size_t most_segments = 4096;
    /// The payload bytes that are digested at most, as a multiple of the file's size.
    static constexpr std::uint64_t most_digested_share = 4;

    /// Throws as `readable_package`.
    explicit package_inspector_t(const std::filesystem::path &path);

    package_report_t inspect();

private:
    void read_header();
    void walk_segments();
    void examine_segment(std::uint64_t record_offset, const segment_record_t &record);
    std::string digest(const segment_record_t &record);
    void find_overlaps();
    void find_text_mode_hazard(std::uint64_t offset, std::size_t size, const std::string &what);
    void add_finding(const char *kind, const std::string &text);

    std::filesystem::path file;
    package_report_t report;
    std::uint64_t digested_bytes = 0;
};
