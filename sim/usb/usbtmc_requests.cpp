// SPDX-License-Identifier: MIT
// The requests of the class that usbtmc_interface_t answers on the control endpoint.
#include "sim/usb/usbtmc_interface.h"

namespace sim::usb {

namespace {

enum request_t : std::uint8_t {
    initiate_abort_bulk_out = 1,
    check_abort_bulk_out = 2,
    initiate_abort_bulk_in = 3,
    check_abort_bulk_in = 4,
    initiate_clear = 5,
    check_clear = 6,
    get_capabilities = 7,
    read_status = 128,
};

constexpr unsigned succeeded = 0x01;
constexpr unsigned failed = 0x80; ///< nothing is under way
constexpr unsigned not_in_progress = 0x81;

/// A status with bytes that are 0 behind it.
std::string status(unsigned code, std::size_t bytes)
{
    std::string answer(bytes, '\0');
    answer[0] = static_cast<char>(code);
    return answer;
}

std::string capabilities()
{
    std::string answer = status(succeeded, 24);
    answer[3] = 1;         // USBTMC 1.00
    answer[5] = 1;         // ends a reply at a termination character
    answer[13] = 1;        // USB488 1.00
    answer[14] = 0x04 | 1; // IEEE 488.2, trigger
    answer[15] = 0x08;     // SCPI
    return answer;
}

} // namespace

usb_answer_t usbtmc_interface_t::answer(const usb_setup_t &setup)
{
    const auto tag = static_cast<std::uint8_t>(setup.value);
    switch (setup.request) {
    case initiate_abort_bulk_out:
        return abort_bulk_out(tag);
    case initiate_abort_bulk_in:
        return abort_bulk_in(tag);
    case check_abort_bulk_out:
    case check_abort_bulk_in:
        return status(succeeded, 8);
    case initiate_clear:
        return clear();
    case check_clear:
        return status(succeeded, 2);
    case get_capabilities:
        return capabilities();
    case read_status:
        return read_status_byte(tag);
    default:
        return std::nullopt;
    }
}

std::string usbtmc_interface_t::abort_bulk_out(std::uint8_t tag)
{
    const bool under_way = !outward.empty();
    const bool this_one = under_way && static_cast<std::uint8_t>(outward[1]) == tag;
    if (this_one)
        outward.clear();
    return status(this_one ? succeeded : under_way ? not_in_progress : failed, 2);
}

std::string usbtmc_interface_t::abort_bulk_in(std::uint8_t tag)
{
    if (!request)
        return status(failed, 2);
    if (request->tag != tag)
        return status(not_in_progress, 2);
    inward.clear();
    short_packet_due = true; // which the host fetches to see that no more comes
    return status(succeeded, 2);
}

std::string usbtmc_interface_t::clear()
{
    outward.clear();
    inward.clear();
    request.reset();
    short_packet_due = false;
    session->clear();
    return status(succeeded, 1);
}

std::string usbtmc_interface_t::read_status_byte(std::uint8_t tag)
{
    std::uint8_t byte = 0;
    session->read_status_byte(byte);
    // With an interrupt endpoint the byte goes there.
    interrupt = little_endian(0x80U | tag, 1) + little_endian(byte, 1);
    return little_endian(succeeded, 1) + little_endian(tag, 2);
}

} // namespace sim::usb
