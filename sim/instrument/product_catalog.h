// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace sim {

/// Test ports first to last, both included; {0, 0} is no port at all.
struct port_range_t
{
    int first = 0;
    int last = 0;
};

/// The hardware of one product of the family.
struct product_t
{
    int id;                     ///< first digit: VNA ports, second: blocks of six test ports
    std::string_view model;     ///< model name of the delivered instrument
    std::string_view vna_ports; ///< one letter a VNA port
    std::array<port_range_t, 2> reach_of_ab;
    std::array<port_range_t, 2> reach_of_cd;

    /// Tells whether the switches can connect the VNA port with the test port.
    bool reaches(char vna_port, int test_port) const;
};

/// The product with this id, or null.
const product_t *find_product(int id);

/// The ids of all products, for messages: "21, 22".
std::string product_ids();

} // namespace sim
