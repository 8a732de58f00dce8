// SPDX-License-Identifier: MIT
#pragma once

#include "visa_io/device_link.h"

#include <cstdint>

namespace visa_io {

/// An instrument behind the kernel's USBTMC driver (USBTMC with USB488, which the driver frames).
///
/// The driver refuses time-outs below 100 ms: shorter ones are as long as that. A device clear,
/// also the one after a time-out, takes as long as the driver lets it, 5 s on a device that does
/// not even answer control requests.
class usb_link_t : public device_link_t
{
public:
    /// Takes an open node of the driver over.
    explicit usb_link_t(int open_node) : node(open_node) {}
    ~usb_link_t() override;

    transfer_t write(std::string_view data, bool end, deadline_t deadline) override;
    transfer_t read(char *buffer, std::size_t size, int term_char, deadline_t deadline) override;
    ViStatus clear(deadline_t deadline) override;
    ViStatus read_status_byte(ViUInt8 &status, deadline_t deadline) override;
    ViStatus trigger(deadline_t deadline) override;

private:
    ViStatus read_piece(transfer_t &done, char *buffer, std::size_t size, std::uint8_t &attributes,
                        deadline_t deadline);
    ViStatus allow_until(deadline_t deadline);
    ViStatus status_of(bool succeeded);

    const int node;
    bool lost = false;
};

} // namespace visa_io
