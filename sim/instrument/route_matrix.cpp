// SPDX-License-Identifier: MIT
#include "sim/instrument/route_matrix.h"

#include "sim/instrument/text_util.h"

namespace sim {

namespace {

constexpr std::string_view family_vna_ports = "ABCD";

constexpr int no_label = -1;

int test_port_of_label(std::string_view label)
{
    if (label.size() > 1 && label.front() == '0')
        return no_label;
    return decimal_number(label).value_or(no_label);
}

} // namespace

scpi_error_t route_matrix_t::apply(std::string_view route)
{
    const std::string letter = to_upper(route.substr(0, 1));
    const int label = route.empty() ? no_label : test_port_of_label(route.substr(1));
    if (label == no_label || family_vna_ports.find(letter) == std::string_view::npos)
        return scpi_error_t::illegal_parameter_value;

    const std::size_t vna_port = product->vna_ports.find(letter);
    if (vna_port == std::string_view::npos)
        return scpi_error_t::data_out_of_range;
    if (label != 0 && !product->reaches(letter.front(), label))
        return scpi_error_t::data_out_of_range;
    if (label != 0 && holds(label, vna_port))
        return scpi_error_t::settings_conflict;
    connected.at(vna_port) = label;
    return scpi_error_t::none;
}

std::string route_matrix_t::text() const
{
    std::string result;
    for (std::size_t port = 0; port < product->vna_ports.size(); ++port)
        result.append(port == 0 ? "" : ",").append(std::to_string(connected.at(port)));
    return result;
}

bool route_matrix_t::holds(int test_port, std::size_t except) const
{
    for (std::size_t port = 0; port < connected.size(); ++port)
        if (port != except && connected.at(port) == test_port)
            return true;
    return false;
}

} // namespace sim
