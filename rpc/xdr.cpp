// SPDX-License-Identifier: MIT
#include "rpc/xdr.h"

namespace rpc {

namespace {

constexpr std::size_t unit_bytes = 4;

std::size_t padding_of(std::size_t count)
{
    return (unit_bytes - count % unit_bytes) % unit_bytes;
}

} // namespace

std::string_view xdr_reader_t::take(std::size_t count)
{
    sound = sound && count <= rest.size();
    if (!sound)
        return {};
    const std::string_view taken = rest.substr(0, count);
    rest.remove_prefix(count);
    return taken;
}

void xdr_reader_t::number(std::uint32_t &value)
{
    value = 0;
    for (const char byte : take(unit_bytes))
        value = value << 8 | static_cast<unsigned char>(byte);
}

void xdr_reader_t::boolean(bool &value)
{
    std::uint32_t read = 0;
    number(read);
    sound = sound && read <= 1;
    value = sound && read == 1;
}

void xdr_reader_t::opaque(std::string_view &bytes, std::size_t most)
{
    std::uint32_t count = 0;
    number(count);
    sound = sound && count <= most;
    bytes = take(count);
    take(padding_of(count));
    if (!sound)
        bytes = {};
}

void xdr_writer_t::number(std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        out.push_back(static_cast<char>(value >> shift & 0xFF));
}

void xdr_writer_t::opaque(std::string_view bytes)
{
    number(static_cast<std::uint32_t>(bytes.size()));
    out.append(bytes).append(padding_of(bytes.size()), '\0');
}

} // namespace rpc
