// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

/// The instrument's network settings, each as the text that the instrument exchanges.
struct lan_settings_t
{
    /// "1" when the address comes from DHCP, "0" when it is fixed.
    std::string dhcp;
    std::string host_name;
    std::string ip_address;
    std::string subnet_mask;
    std::string gateway;
    /// Only read, never sent.
    std::string mac_address;
};

/// What the instrument tells about itself.
struct device_info_t
{
    std::string model_name;
    std::string serial_number;
    std::string software_version;
    /// Places of the record that no query fills today; they stay empty.
    std::array<std::string, 3> unused;
    /// Decimal product type, for example "44".
    std::string product_id;
};

/// The four numbers with which an instrument says which firmware packages it accepts.
struct upgrade_id_t
{
    /// The one identifier that is accepted when `exact` is not 0.
    int id = 0;
    /// The bounds, both included, that are accepted when `exact` is 0.
    int lowest = 0;
    int highest = 0;
    int exact = 0;
};

/// Stands for an instrument that does not tell: no number is in the range from 1 to 0.
constexpr upgrade_id_t accepts_nothing{0, 1, 0, 0};
