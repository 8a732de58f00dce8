// SPDX-License-Identifier: MIT
#include "sim/instrument/instrument_state.h"

#include "sim/instrument/text_util.h"

namespace sim {

namespace {

const product_t &product_of(const instrument_config_t &config)
{
    const product_t *product = find_product(config.product);
    return product != nullptr ? *product : *find_product(44);
}

std::string joined(const std::array<int, 4> &numbers)
{
    std::string text;
    for (const int number : numbers)
        text.append(text.empty() ? "" : ",").append(std::to_string(number));
    return text;
}

} // namespace

instrument_state_t::instrument_state_t(const instrument_config_t &config)
    : mode(config.foreign_identity.empty() ? instrument_mode_t::normal
                                           : instrument_mode_t::foreign),
      foreign_identity(config.foreign_identity),
      identity{std::string(product_of(config).model), config.serial, config.version,
               std::to_string(product_of(config).id)},
      provisioned(identity),
      temperature(config.temperature),
      upgrade_id(joined(config.upgrade_id)),
      routes(product_of(config)),
      colors(config.colors),
      lan(config.lan)
{
    for (const std::string &route : config.routes)
        routes.apply(route);
}

std::string instrument_state_t::identification() const
{
    if (mode == instrument_mode_t::foreign)
        return foreign_identity;
    return "TMX," + identity.model + "," + identity.serial + "," + identity.version;
}

void instrument_state_t::note_error(scpi_error_t error)
{
    errors.push(error);
    status.note_error(error);
}

void instrument_state_t::restart(instrument_mode_t next_mode)
{
    mode = next_mode;
    identity = provisioned;
    const auto id = decimal_number(identity.product_id);
    const product_t *product = id ? find_product(*id) : nullptr;
    if (product != nullptr)
        routes = route_matrix_t(*product);
    routes.clear();
    firmware.restart();
    errors.clear();
    status = status_registers_t();
}

void instrument_state_t::reset_to_factory()
{
    routes.clear();
    colors.reset();
    lan.reset_to_factory();
    provisioned = identity;
}

} // namespace sim
