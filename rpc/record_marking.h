// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace rpc {

/// Puts the fragments of a stream together to records (RFC 5531, chapter 11).
class record_reader_t
{
public:
    enum class state_t : std::uint8_t {
        incomplete, ///< more bytes are needed
        complete,   ///< record() is one
        too_long    ///< the peer announces more than is allowed; the stream is of no use any more
    };

    explicit record_reader_t(std::size_t most_record_bytes) : most_bytes(most_record_bytes) {}

    /// Takes bytes from the front of a part of the stream, up to the end of a record.
    state_t feed(std::string_view &stream);

    /// The record that is complete, until the next feed().
    std::string_view record() const { return bytes; }

private:
    bool read_header(std::string_view &stream);

    std::size_t most_bytes;
    std::string bytes;
    std::string header;   ///< what has come of the current fragment's header
    std::size_t left = 0; ///< of the current fragment
    bool last_fragment = false;
    bool ended = false;
};

/// What goes in front of a record; end_record() fills it in.
constexpr std::string_view record_header_room{"\0\0\0\0", 4};

/// Makes everything in `out` behind `begin`, where the room for the header is, one record.
void end_record(std::string &out, std::size_t begin);

} // namespace rpc
