// SPDX-License-Identifier: MIT
#include "upgrade/segment_chain.h"

#include "upgrade/package_reader.h"

#include <utility>

segment_chain_t::segment_chain_t(std::filesystem::path package, std::uint32_t chain_end)
    : file(std::move(package)), end_offset(chain_end)
{
}

/// Offsets are kept in 64 bits, in which the end of no payload wraps around.
chain_step_t segment_chain_t::next()
{
    offset = next_offset;
    if (!visited.empty() && offset == end_offset)
        return chain_step_t::complete;
    if (!file_holds(file, offset, segment_record_bytes))
        return chain_step_t::missing;
    if (!visited.insert(offset).second)
        return chain_step_t::repeated;
    segment_record_buffer_t buffer{};
    read_segment_record(file, buffer, offset);
    current = parse_segment_record(buffer);
    next_offset = std::uint64_t{current.data_offset} + current.data_length;
    return chain_step_t::segment;
}

const segment_record_t &segment_chain_t::record() const noexcept
{
    return current;
}

std::uint64_t segment_chain_t::record_offset() const noexcept
{
    return offset;
}
