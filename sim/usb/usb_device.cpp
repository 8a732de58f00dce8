// SPDX-License-Identifier: MIT
#include "sim/usb/usb_device.h"

#include <algorithm>

namespace sim::usb {

namespace {

enum standard_request_t : std::uint8_t {
    get_status = 0,
    clear_feature = 1,
    get_descriptor = 6,
    set_configuration = 9,
    set_interface = 11,
};

/// How often the instrument is asked for a late reply, and whether it is still there.
constexpr int look_interval_ms = 5;

} // namespace

void usb_device_t::serve()
{
    while (interface.is_connected()) {
        if (link.wait(look_interval_ms)) {
            const auto urb = link.receive();
            if (!urb)
                return;
            take(*urb);
        }
        end_waiting();
    }
}

void usb_device_t::take(const urb_t &urb)
{
    if (urb.takes_back)
        take_back(urb);
    else if (urb.endpoint == 0)
        control(urb);
    else if (urb.is_in)
        waiting.push_back(urb);
    else
        link.end(urb,
                 interface.take_bulk_out(urb.data) ? urb_status_t::done : urb_status_t::stalled);
}

void usb_device_t::control(const urb_t &urb)
{
    const usb_setup_t setup(urb.setup);
    auto answer = setup.is_of_class() ? interface.answer(setup) : answer_standard(setup);
    if (!answer) {
        link.end(urb, urb_status_t::stalled);
        return;
    }
    answer->resize(std::min<std::size_t>(answer->size(), setup.length));
    link.end(urb, urb_status_t::done, *answer);
}

usb_answer_t usb_device_t::answer_standard(const usb_setup_t &setup)
{
    switch (setup.request) {
    case get_descriptor:
        return descriptor(identity, setup);
    case get_status:
        return little_endian(0, 2);
    case clear_feature:
        interface.clear_halt(static_cast<std::uint8_t>(setup.index));
        return std::string();
    case set_configuration:
    case set_interface:
        return std::string();
    default:
        return std::nullopt;
    }
}

void usb_device_t::take_back(const urb_t &urb)
{
    const auto found = std::find_if(waiting.begin(), waiting.end(), [&urb](const urb_t &other) {
        return other.number == urb.taken_back;
    });
    const bool in_time = found != waiting.end();
    if (in_time)
        waiting.erase(found);
    link.end_taken_back(urb, in_time);
}

void usb_device_t::end_waiting()
{
    for (auto urb = waiting.begin(); urb != waiting.end();) {
        const bool is_bulk = urb->endpoint == (bulk_in_endpoint & 0x0FU);
        const auto given =
            is_bulk ? interface.give_bulk_in(urb->length) : interface.give_interrupt();
        if (given)
            link.end(*urb, urb_status_t::done, *given);
        urb = given ? waiting.erase(urb) : urb + 1;
    }
}

} // namespace sim::usb
