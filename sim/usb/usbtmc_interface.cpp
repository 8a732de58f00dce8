// SPDX-License-Identifier: MIT
#include "sim/usb/usbtmc_interface.h"

#include "sim/usb/descriptors.h"

#include <algorithm>
#include <utility>

namespace sim::usb {

namespace {

constexpr std::size_t header_bytes = 12;
constexpr std::size_t most_message_bytes = std::size_t{1} << 20;

enum message_id_t : std::uint8_t { device_message = 1, reply_request = 2, trigger = 128 };

constexpr unsigned end_of_message = 1;
constexpr unsigned term_char_enabled = 2;

std::uint8_t byte_at(std::string_view bytes, std::size_t index)
{
    return static_cast<std::uint8_t>(bytes[index]);
}

std::size_t transfer_size(std::string_view header)
{
    std::size_t size = 0;
    for (std::size_t index = 8; index-- > 4;)
        size = size << 8U | byte_at(header, index);
    return size;
}

std::size_t padded(std::size_t bytes)
{
    return (bytes + 3) / 4 * 4;
}

} // namespace

bool usbtmc_interface_t::take_bulk_out(std::string_view bytes)
{
    outward += bytes;
    const auto whole = transfer_bytes();
    out_halted = out_halted || !whole;
    if (!out_halted && outward.size() >= *whole) {
        out_halted = !execute(outward);
        outward.clear();
    }
    if (out_halted)
        outward.clear();
    return !out_halted;
}

/// The size of the transfer that has begun to come in; nothing when it is no proper one.
std::optional<std::size_t> usbtmc_interface_t::transfer_bytes() const
{
    if (outward.size() < header_bytes)
        return std::nullopt;
    const unsigned tag = byte_at(outward, 1);
    const bool is_message = byte_at(outward, 0) == device_message;
    if (tag == 0 || byte_at(outward, 2) != (~tag & 0xFFU) ||
        (is_message && transfer_size(outward) > most_message_bytes))
        return std::nullopt;
    return is_message ? header_bytes + padded(transfer_size(outward)) : header_bytes;
}

bool usbtmc_interface_t::execute(std::string_view transfer)
{
    switch (byte_at(transfer, 0)) {
    case device_message:
        session->write(transfer.substr(header_bytes, transfer_size(transfer)),
                       (byte_at(transfer, 8) & end_of_message) != 0);
        return true;
    case reply_request:
        return accept_request(transfer);
    case trigger:
        session->trigger();
        return true;
    default:
        return false;
    }
}

bool usbtmc_interface_t::accept_request(std::string_view header)
{
    if (request)
        return false;
    request = {byte_at(header, 1), std::min(transfer_size(header), most_message_bytes), {}};
    if ((byte_at(header, 8) & term_char_enabled) != 0)
        request->term_char = header[9];
    // Tells the instrument that it is asked for a reply that it does not have.
    if (!session->reply_due())
        session->read(nullptr, 0, sim::at_once);
    return true;
}

void usbtmc_interface_t::prepare_reply()
{
    const auto due = session->reply_due();
    if (!request || !inward.empty() || short_packet_due || !due || *due > bus_clock_t::now())
        return;
    std::string data(request->most_bytes, '\0');
    const auto read = session->read(data.data(), data.size(), sim::at_once, request->term_char);
    if (!read.ok())
        return;
    const unsigned attributes =
        (read.end ? end_of_message : 0) | (read.term_char_seen ? term_char_enabled : 0);
    inward = little_endian(reply_request, 1) + little_endian(request->tag, 1) +
             little_endian(~unsigned{request->tag}, 1) + little_endian(0, 1) +
             little_endian(read.count, 4) + little_endian(attributes, 4);
    inward += data.substr(0, read.count);
}

std::optional<std::string> usbtmc_interface_t::give_bulk_in(std::size_t length)
{
    prepare_reply();
    if (inward.empty() && !short_packet_due)
        return std::nullopt;
    std::string given = inward.substr(0, length);
    inward.erase(0, length);
    short_packet_due =
        inward.empty() && given.size() == length && given.size() % bulk_packet_bytes == 0;
    if (inward.empty() && !short_packet_due)
        request.reset();
    return given;
}

std::optional<std::string> usbtmc_interface_t::give_interrupt()
{
    return std::exchange(interrupt, std::nullopt);
}

void usbtmc_interface_t::clear_halt(std::uint8_t endpoint)
{
    if (endpoint == bulk_out_endpoint)
        out_halted = false;
}

} // namespace sim::usb
