// SPDX-License-Identifier: MIT
#pragma once

#include "upgrade/package_format.h"

#include <cstdint>
#include <string>
#include <vector>

/// A segment as it stands in a package.
struct segment_report_t
{
    std::uint64_t record_offset;
    segment_record_t record;
    /// Of the payload, in hexadecimal; empty when it was not worked out.
    std::string sha256;
};

/// Something that is wrong with a package, or suspicious: a word for programs, a text for people.
struct finding_t
{
    std::string kind;
    std::string text;
};

/// What `corvane-package inspect` tells about a package.
struct package_report_t
{
    std::uint64_t file_bytes = 0;
    /// False when the header is not one; its fields, and the segments, then mean nothing.
    bool has_magic = false;
    std::int32_t product_id = 0;
    std::uint32_t end_offset = 0;
    std::vector<segment_report_t> segments;
    std::vector<finding_t> findings;
};

/// The report as lines of "name: value".
std::string report_as_text(const package_report_t &report);
/// The report as a JSON text, without anything that the text form lacks.
std::string report_as_json(const package_report_t &report);
