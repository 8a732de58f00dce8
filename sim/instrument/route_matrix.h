// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/product_catalog.h"
#include "sim/instrument/scpi_error.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace sim {

/// The switches of one instrument: which test port each VNA port is connected with.
class route_matrix_t
{
public:
    explicit route_matrix_t(const product_t &product_) : product(&product_) {}

    /// Applies a route as "ADD:ROUTe" takes it: VNA port letter and test-port label without
    /// leading zeros, "0" to disconnect ("A13", "A0"); letter case does not matter. A VNA
    /// port that has a route is moved. Refused, with the routes as they were:
    /// - -224 when the text is no route at all,
    /// - -222 when a port does not exist or the VNA port cannot reach the test port,
    /// - -221 when another VNA port holds the test port.
    scpi_error_t apply(std::string_view route);

    /// The reply to "ROUTes?": one label per VNA port joined by ",", "0" when unrouted.
    std::string text() const;

    /// The test port of the n-th VNA port, 0 when unrouted.
    int test_port(std::size_t vna_port) const { return connected.at(vna_port); }

    std::string_view vna_ports() const { return product->vna_ports; }

    /// Disconnects every VNA port.
    void clear() { connected.fill(0); }

private:
    static constexpr std::size_t most_vna_ports = 4;

    bool holds(int test_port, std::size_t except) const;

    const product_t *product;
    std::array<int, most_vna_ports> connected{};
};

} // namespace sim
