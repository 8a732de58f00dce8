// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

namespace rpc {

/// Reads items of XDR (RFC 4506) from bytes that stay where they are.
///
/// Nothing is trusted: the first item that is not there whole, or is longer than allowed, makes
/// this reader fail for good. Items then read as zero and empty.
class xdr_reader_t
{
public:
    explicit xdr_reader_t(std::string_view bytes) : rest(bytes) {}

    /// An unsigned integer of 32 bits; also a signed one, an enumeration's.
    void number(std::uint32_t &value);
    void boolean(bool &value); ///< only 0 and 1 are one

    /// Opaque data or text of variable length, up to `most` bytes.
    void opaque(std::string_view &bytes, std::size_t most = no_limit);

    /// Reads a structure that lists its items.
    template <typename structure_t>
    void structure(structure_t &value)
    {
        std::apply([this](auto &...items) { (this->item(items), ...); }, structure_t::items(value));
    }

    bool ok() const { return sound; }

    /// What has not been read.
    std::string_view remaining() const { return rest; }

    static constexpr std::size_t no_limit = SIZE_MAX;

private:
    void item(std::uint32_t &value) { number(value); }
    void item(bool &value) { boolean(value); }
    void item(std::string_view &bytes) { opaque(bytes); }
    std::string_view take(std::size_t count);

    std::string_view rest;
    bool sound = true;
};

/// Writes items of XDR behind what a string holds.
class xdr_writer_t
{
public:
    explicit xdr_writer_t(std::string &destination) : out(destination) {}

    void number(std::uint32_t value);
    void boolean(bool value) { number(value ? 1 : 0); }
    void opaque(std::string_view bytes);

    /// Writes a structure that lists its items.
    template <typename structure_t>
    void structure(const structure_t &value)
    {
        std::apply([this](const auto &...items) { (this->item(items), ...); },
                   structure_t::items(value));
    }

private:
    void item(std::uint32_t value) { number(value); }
    void item(bool value) { boolean(value); }
    void item(std::string_view bytes) { opaque(bytes); }

    std::string &out;
};

} // namespace rpc
