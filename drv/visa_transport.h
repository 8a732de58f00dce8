// SPDX-License-Identifier: MIT
#pragma once

#include "drv/transport.h"

/// The VISA link, `drv_device_t`, as a transport.
class visa_transport_t final : public transport_t
{
public:
    /// The longest reply that is read, in bytes.
    static constexpr std::size_t reply_buffer_bytes = 300;

    static visa_transport_t &instance();

    bool heeds_link_mode() const noexcept override { return true; }
    std::vector<found_instrument_t> find() override;
    bool open(const std::string &name) override;
    bool write(const std::string &text) override;
    bool read(std::string &out) override;
    bool query(const std::string &text, std::string &out) override;

private:
    visa_transport_t() = default;
    ~visa_transport_t() = default;
};
