// SPDX-License-Identifier: MIT
#include "sim/visa/visa_bus.h"

#include "sim/fleet_json.h"

#include <utility>

namespace sim::visa {

visa_bus_t::visa_bus_t(const fleet_t &fleet)
    : default_timeout(static_cast<ViUInt32>(fleet.default_timeout.count())),
      reboot_time(fleet.reboot_time)
{
    instruments.reserve(fleet.instruments.size());
    for (const fleet_instrument_t &entry : fleet.instruments) {
        instruments.push_back({sim_instrument_t(entry.config), entry.response_delay, {}});
        for (const std::string &name : entry.resources)
            add_resource(name);
    }
}

void visa_bus_t::add_resource(const std::string &name_text)
{
    auto name = read_resource_name(name_text);
    if (!name || name->bus == resource_name_t::bus_t::other ||
        name_text.size() >= find_buffer_bytes)
        throw fleet_error_t("resource \"" + name_text + "\": not a USB or TCPIP instrument name");
    if (!resource_of_key.emplace(name->key, resources.size()).second)
        throw fleet_error_t("resource \"" + name_text + "\": used twice");
    bus_resource_t resource;
    resource.name_text = name_text;
    resource.name = std::move(*name);
    resource.instrument = instruments.size() - 1;
    resources.push_back(std::move(resource));
}

std::vector<std::string> visa_bus_t::find(const resource_expression_t &expression) const
{
    std::vector<std::string> names;
    for (std::size_t index = 0; index < resources.size(); ++index)
        if (is_present(index) && expression.matches(resources[index].name_text))
            names.push_back(resources[index].name_text);
    return names;
}

std::optional<std::size_t> visa_bus_t::resource_of(const resource_name_t &name) const
{
    const auto found = resource_of_key.find(name.key);
    if (found == resource_of_key.end())
        return std::nullopt;
    return found->second;
}

std::optional<std::size_t> visa_bus_t::resource_of(std::string_view name) const
{
    const auto read = read_resource_name(name);
    return read ? resource_of(*read) : std::nullopt;
}

bool visa_bus_t::is_present(std::size_t resource) const
{
    const bus_resource_t &place = resources[resource];
    return place.plugged && bus_clock_t::now() >= instruments[place.instrument].away_until;
}

bool visa_bus_t::is_connected(const visa_session_t &session) const
{
    return resources[session.resource].connection == session.connection;
}

std::optional<pending_reply_t> visa_bus_t::deliver(std::size_t resource, std::string_view message)
{
    instrument_outcome_t outcome = instrument_at(resource).receive(message);
    apply(outcome.effect, resources[resource].instrument);
    if (!outcome.reply)
        return std::nullopt;
    return pending_reply_t{std::move(*outcome.reply), reply_time(resource)};
}

bus_clock_t::time_point visa_bus_t::reply_time(std::size_t resource) const
{
    return bus_clock_t::now() + instruments[resources[resource].instrument].response_delay;
}

void visa_bus_t::apply(instrument_effect_t effect, std::size_t instrument)
{
    if (effect == instrument_effect_t::none)
        return;
    if (effect == instrument_effect_t::reboot)
        instruments[instrument].away_until = bus_clock_t::now() + reboot_time;
    for (bus_resource_t &resource : resources) {
        if (resource.instrument != instrument)
            continue;
        ++resource.connection;
        resource.plugged = resource.plugged && effect != instrument_effect_t::unplug;
    }
}

void visa_bus_t::unplug(std::size_t resource)
{
    resources[resource].plugged = false;
    ++resources[resource].connection;
}

void visa_bus_t::plug(std::size_t resource)
{
    resources[resource].plugged = true;
}

} // namespace sim::visa
