// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/scpi_error.h"

#include <string>
#include <string_view>

namespace sim {

/// An IPv4 address with its net, each in dotted decimal.
struct ip_settings_t
{
    std::string address;
    std::string mask;
    std::string gateway;
};

/// The network settings of an instrument. With DHCP on, the leased address is in use and
/// the fixed one is remembered. Every setter refuses a bad text with -224 and then changes
/// nothing.
class lan_config_t
{
public:
    lan_config_t();

    /// "1" turns DHCP on, "0" turns it off.
    scpi_error_t set_dhcp(std::string_view flag);
    /// A host name of letters, digits, hyphens and dots (RFC 1123), up to 63 characters.
    scpi_error_t set_host_name(std::string_view name);
    /// The fixed address: four octets, the first one from 1 to 223.
    scpi_error_t set_address(std::string_view address);
    /// The fixed mask: ones, then zeros.
    scpi_error_t set_mask(std::string_view mask);
    /// The fixed gateway: an address, or 0.0.0.0 for none.
    scpi_error_t set_gateway(std::string_view gateway);
    /// Six octets in hexadecimal joined by ":" or "-".
    scpi_error_t set_mac(std::string_view mac);

    /// What DHCP hands out; checked like the fixed settings.
    scpi_error_t set_lease(const ip_settings_t &lease);

    /// Back to the delivered settings, DHCP on; the MAC address and the lease stay.
    void reset_to_factory();

    bool dhcp() const { return dhcp_on; }
    const std::string &host_name() const { return host; }
    const std::string &mac() const { return hardware_address; }
    const ip_settings_t &in_use() const { return dhcp_on ? leased : fixed; }
    const ip_settings_t &fixed_settings() const { return fixed; }

private:
    bool dhcp_on;
    std::string host;
    std::string hardware_address;
    ip_settings_t fixed;
    ip_settings_t leased;
};

} // namespace sim
