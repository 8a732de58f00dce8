// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"

#include <memory>
#include <string>
#include <vector>

namespace usb_kernel {

/// The plainest use of the kernel's driver that keeps the promises of device_link_t, but that a
/// time-out below 100 ms is as long as that. It shows that device and driver get along, whatever
/// Corvane's own access makes of them.
class driver_link_t : public visa_io::device_link_t
{
public:
    /// The VISA names of the instruments that the driver has.
    static std::vector<std::string> search();

    /// Null while there is no such instrument.
    static std::unique_ptr<driver_link_t> open(const std::string &name);

    explicit driver_link_t(int open_descriptor) : descriptor(open_descriptor) {}
    ~driver_link_t() override;

    visa_io::transfer_t write(std::string_view data, bool end,
                              visa_io::deadline_t deadline) override;
    visa_io::transfer_t read(char *buffer, std::size_t size, int term_char,
                             visa_io::deadline_t deadline) override;
    ViStatus clear(visa_io::deadline_t deadline) override;
    ViStatus read_status_byte(ViUInt8 &status, visa_io::deadline_t deadline) override;
    ViStatus trigger(visa_io::deadline_t deadline) override;

private:
    void allow_until(visa_io::deadline_t deadline) const;
    ViStatus status_of(bool succeeded);

    int descriptor;
    bool lost = false;
};

} // namespace usb_kernel
