// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_session.h"
#include "sim/usb/usb_setup.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace sim::usb {

/// The USBTMC interface (USBTMC 1.0 with USB488) of a simulated instrument.
///
/// It is as strict as the standard allows: a request for a reply stays until the reply is fetched
/// or the request aborted under its own tag, and a second request before that halts the endpoint.
/// So a host that is careless after a time-out is out of step with it.
class usbtmc_interface_t
{
public:
    explicit usbtmc_interface_t(std::shared_ptr<bus_session_t> its_session)
        : session(std::move(its_session))
    {
    }

    /// False once the instrument is off the bus.
    bool is_connected() const { return session->is_connected(); }

    /// Takes what one outward bulk transfer brings; false halts the endpoint.
    bool take_bulk_out(std::string_view bytes);

    /// What an inward bulk transfer of at most `length` bytes gets; nothing while it has to wait.
    std::optional<std::string> give_bulk_in(std::size_t length);

    /// The same of the interrupt endpoint.
    std::optional<std::string> give_interrupt();

    /// Answers a request of the class.
    usb_answer_t answer(const usb_setup_t &setup);

    void clear_halt(std::uint8_t endpoint);

private:
    struct reply_request_t
    {
        std::uint8_t tag = 0;
        std::size_t most_bytes = 0;
        std::optional<char> term_char;
    };

    std::optional<std::size_t> transfer_bytes() const;
    bool execute(std::string_view transfer);
    bool accept_request(std::string_view header);
    void prepare_reply();

    std::string abort_bulk_out(std::uint8_t tag);
    std::string abort_bulk_in(std::uint8_t tag);
    std::string clear();
    std::string read_status_byte(std::uint8_t tag);

    std::shared_ptr<bus_session_t> session;
    std::string outward; ///< the bytes of a transfer so far
    bool out_halted = false;
    std::optional<reply_request_t> request; ///< until the reply is fetched whole
    std::string inward;                     ///< what is still to be fetched
    bool short_packet_due = false;          ///< the fetched bytes do not show yet that they are all
    std::optional<std::string> interrupt;
};

} // namespace sim::usb
