// SPDX-License-Identifier: MIT
#include "sim/serial/message_splitter.h"

#include "sim/instrument/command_table.h"
#include "sim/instrument/firmware_store.h"

namespace sim::serial {

namespace {

constexpr std::size_t unknown = std::string_view::npos;
constexpr std::string_view block_header = "UPGRADE ";
constexpr std::size_t block_message_bytes = block_header.size() + firmware_store_t::block_bytes;

/// What follows one of these is an argument or the rest of a header.
constexpr std::string_view joints = " ,:;";

std::size_t end_of_message(std::string_view bytes)
{
    if (bytes.substr(0, block_header.size()) == block_header)
        return bytes.size() < block_message_bytes ? unknown : block_message_bytes;
    for (std::size_t place = 1; place <= bytes.size(); ++place) {
        const char last = bytes[place - 1];
        if (last == '\n' ||
            (joints.find(last) == unknown && begins_with_command(bytes.substr(place))))
            return place;
    }
    return unknown;
}

} // namespace

std::optional<std::string> message_splitter_t::take(bool quiet)
{
    const std::size_t end = end_of_message(pending);
    if (pending.empty() || (end == unknown && !quiet))
        return std::nullopt;
    std::string message = pending.substr(0, end);
    pending.erase(0, end);
    return message;
}

} // namespace sim::serial
