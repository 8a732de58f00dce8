// SPDX-License-Identifier: MIT
#include "rpc/record_marking.h"

#include "rpc/xdr.h"

#include <algorithm>

namespace rpc {

namespace {

constexpr std::uint32_t last_fragment_bit = 0x8000'0000;

/// A long record's memory is given back.
constexpr std::size_t kept_bytes = 4096;

std::string_view take(std::string_view &stream, std::size_t most)
{
    const std::string_view taken = stream.substr(0, most);
    stream.remove_prefix(taken.size());
    return taken;
}

} // namespace

record_reader_t::state_t record_reader_t::feed(std::string_view &stream)
{
    if (ended) {
        ended = false;
        bytes.clear();
        if (bytes.capacity() > kept_bytes)
            bytes.shrink_to_fit();
    }
    while (left > 0 || read_header(stream)) {
        if (left > most_bytes - bytes.size())
            return state_t::too_long;
        const std::string_view part = take(stream, left);
        bytes.append(part);
        left -= part.size();
        ended = left == 0 && last_fragment;
        if (ended)
            return state_t::complete;
        if (stream.empty())
            break;
    }
    return state_t::incomplete;
}

bool record_reader_t::read_header(std::string_view &stream)
{
    header.append(take(stream, record_header_room.size() - header.size()));
    if (header.size() < record_header_room.size())
        return false;
    std::uint32_t mark = 0;
    xdr_reader_t(header).number(mark);
    header.clear();
    last_fragment = (mark & last_fragment_bit) != 0;
    left = mark & ~last_fragment_bit;
    return true;
}

void end_record(std::string &out, std::size_t begin)
{
    const std::size_t count = out.size() - begin - record_header_room.size();
    std::string mark;
    xdr_writer_t(mark).number(last_fragment_bit | static_cast<std::uint32_t>(count));
    std::copy(mark.begin(), mark.end(), out.begin() + static_cast<std::ptrdiff_t>(begin));
}

} // namespace rpc
