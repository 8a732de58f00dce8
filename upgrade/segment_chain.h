// SPDX-License-Identifier: MIT
#pragma once

#include "upgrade/package_format.h"

#include <cstdint>
#include <filesystem>
#include <set>

/// What `segment_chain_t::next` comes to.
enum class chain_step_t : std::uint8_t {
    segment,  ///< a segment record
    complete, ///< the end offset
    missing,  ///< a place where the file has no record
    repeated  ///< a record that was there before
};

/// Walks the segments of a package in the order of its chain.
///
/// The chain is complete only when a payload ends exactly at the end offset. It ends in any case:
/// one that leaves the file, or returns to a record, is broken there.
class segment_chain_t
{
public:
    segment_chain_t(std::filesystem::path file, std::uint32_t end_offset);

    /// Goes to the next record; call it no more once it does not answer `segment`.
    chain_step_t next();

    /// The record that `next` has read.
    const segment_record_t &record() const noexcept;
    /// The file offset of that record or, once the chain is broken, of the one that it lacks.
    std::uint64_t record_offset() const noexcept;

private:
    std::filesystem::path file;
    std::uint32_t end_offset;
    segment_record_t current{};
    std::uint64_t offset = upgrade_header_bytes;
    std::uint64_t next_offset = upgrade_header_bytes;
    std::set<std::uint64_t> visited;
};
