// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"
#include "visa_io/usb/background_call.h"
#include "visa_io/usb/descriptor.h"

#include <array>
#include <atomic>
#include <utility>

namespace visa_io {

/// A USB instrument through the kernel's usbtmc driver (USBTMC 1.0 and its subclass USB488), which
/// frames the messages.
///
/// After a time-out or a failed transfer the instrument is cleared before anything else is sent to
/// it, in the background. All who opened the node share one exchange with the instrument, in which
/// the driver lets one call after the other; closing waits for those of this link that still run,
/// and clears the instrument once more when that has failed.
class usb_link_t final : public device_link_t
{
public:
    explicit usb_link_t(descriptor_t open_node) : node(std::move(open_node)) {}
    ~usb_link_t() override;

    transfer_t write(std::string_view data, bool end, deadline_t deadline) override;
    transfer_t read(char *buffer, std::size_t size, int term_char, deadline_t deadline) override;
    ViStatus clear(deadline_t deadline) override;
    ViStatus read_status_byte(ViUInt8 &status, deadline_t deadline) override;
    ViStatus trigger(deadline_t deadline) override;

private:
    using job_t = background_call_t::job_t;

    /// With its header and padding one transfer of the driver, which has one time-out then.
    static constexpr std::size_t piece_bytes = 4080;

    /// The time that the parts of one operation have together.
    struct limits_t
    {
        deadline_t deadline;
        deadline_t given_up_at; ///< what came of it is waited for until then
    };

    limits_t begin(deadline_t deadline);
    ViStatus perform(const job_t &job, const limits_t &limits);
    ViStatus set_term_char(int term_char, const limits_t &limits);
    int send_piece(std::size_t size, bool end) const;
    int receive_piece(std::size_t size, bool is_first);
    int in_time() const;
    int recover();

    const descriptor_t node;
    bool is_lost = false;
    int set_char = -1; ///< the termination character that the driver knows; -1: none

    deadline_t given_up_at{}; ///< the caller of the job that runs waits until then

    // Written by a job; read only when it has ended.
    std::array<char, piece_bytes> piece{};
    std::size_t piece_count = 0;
    bool piece_ends = false;
    ViUInt8 status_byte = 0;

    std::atomic<bool> has_begun = false;      ///< the operation has got through to the driver
    std::atomic<bool> needs_recovery = false; ///< the instrument is to be cleared first
    background_call_t calls;                  ///< the last member: its end waits for the job
};

} // namespace visa_io
