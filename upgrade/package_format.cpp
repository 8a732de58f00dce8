// SPDX-License-Identifier: MIT
#include "upgrade/package_format.h"

#include "upgrade/little_endian.h"

#include <algorithm>

std::uint32_t header_end_offset(const upgrade_header_t &header)
{
    return read_little_endian<std::uint32_t>(header.data() + header_layout::end_offset);
}

std::int32_t header_product_id(const upgrade_header_t &header)
{
    return read_little_endian<std::int32_t>(header.data() + header_layout::product_id);
}

bool header_has_magic(const upgrade_header_t &header)
{
    return std::equal(header_magic.begin(), header_magic.end(),
                      header.begin() + header_layout::magic);
}

segment_record_t parse_segment_record(const segment_record_buffer_t &buffer)
{
    return {read_little_endian<std::uint32_t>(buffer.data()),
            read_little_endian<std::uint32_t>(&buffer[4]),
            read_little_endian<std::uint32_t>(&buffer[8])};
}

const segment_kind_t *find_segment_kind(std::uint8_t type)
{
    const auto *const found =
        std::find_if(segment_kinds.begin(), segment_kinds.end(),
                     [type](const segment_kind_t &kind) { return kind.type == type; });
    return found != segment_kinds.end() ? found : nullptr;
}

bool payload_fits(const segment_kind_t &kind, std::size_t length)
{
    return kind.transfer != segment_transfer_t::parameter ||
           length <= parameter_command_bytes - kind.command.size();
}
