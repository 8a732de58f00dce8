// SPDX-License-Identifier: MIT
#include "sim/instrument/state_report.h"

#include <nlohmann/json.hpp>

namespace sim {

namespace {

using json_t = nlohmann::ordered_json;

const char *mode_name(instrument_mode_t mode)
{
    switch (mode) {
    case instrument_mode_t::loader:
        return "loader";
    case instrument_mode_t::foreign:
        return "foreign";
    case instrument_mode_t::normal:
        break;
    }
    return "normal";
}

json_t routes_of(const route_matrix_t &routes)
{
    json_t object = json_t::object();
    for (std::size_t port = 0; port < routes.vna_ports().size(); ++port)
        object[std::string(1, routes.vna_ports()[port])] = routes.test_port(port);
    return object;
}

json_t colors_of(const led_colors_t &colors)
{
    json_t object = json_t::object();
    for (const char letter : led_colors_t::channels) {
        const std::string channel(1, letter);
        object[channel] = colors.color(channel).value_or("");
    }
    return object;
}

json_t addresses_of(const ip_settings_t &settings)
{
    return {{"ip", settings.address}, {"mask", settings.mask}, {"gateway", settings.gateway}};
}

json_t lan_of(const lan_config_t &lan)
{
    return {{"dhcp", lan.dhcp()},
            {"host_name", lan.host_name()},
            {"mac", lan.mac()},
            {"fixed", addresses_of(lan.fixed_settings())},
            {"in_use", addresses_of(lan.in_use())}};
}

json_t errors_of(const error_queue_t &errors)
{
    json_t list = json_t::array();
    for (const scpi_error_t error : errors.content())
        list.push_back(static_cast<int>(error));
    return list;
}

json_t images_of(const firmware_store_t &firmware)
{
    json_t list = json_t::array();
    for (const firmware_image_t &image : firmware.images()) {
        list.push_back({{"kind", image.kind == image_kind_t::boot ? "boot" : "host"},
                        {"announced_bytes", image.announced_bytes},
                        {"received_bytes", image.bytes.size()}});
    }
    return list;
}

} // namespace

std::string state_report(const instrument_state_t &state)
{
    const json_t report{{"mode", mode_name(state.mode)},
                        {"identification", state.identification()},
                        {"product", state.identity.product_id},
                        {"model", state.identity.model},
                        {"serial", state.identity.serial},
                        {"version", state.identity.version},
                        {"routes", routes_of(state.routes)},
                        {"colors", colors_of(state.colors)},
                        {"lan", lan_of(state.lan)},
                        {"errors", errors_of(state.errors)},
                        {"ready", state.firmware.ready()},
                        {"images", images_of(state.firmware)},
                        {"parameters", state.firmware.parameters().size()}};
    // Provisioned texts are printable, but a foreign identity may hold any bytes.
    return report.dump(-1, ' ', false, json_t::error_handler_t::replace);
}

} // namespace sim
