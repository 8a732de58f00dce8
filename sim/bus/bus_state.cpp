// SPDX-License-Identifier: MIT
#include "sim/bus/bus_state.h"

#include "sim/bus/bus_session.h"
#include "sim/bus/fleet_json.h"

#include <utility>

namespace sim {

void bus_state_t::load(const fleet_t &fleet)
{
    bus_state_t loaded;
    loaded.session_timeout = fleet.default_timeout;
    loaded.reboot_time = fleet.reboot_time;
    loaded.instruments.reserve(fleet.instruments.size());
    for (const fleet_instrument_t &entry : fleet.instruments) {
        loaded.instruments.push_back({sim_instrument_t(entry.config), entry.response_delay});
        for (const std::string &name : entry.resources)
            loaded.add_place(name);
    }
    faults.clear();
    loaded.faults = std::move(faults);
    loaded.log = std::move(log);
    loaded.sessions = std::move(sessions);
    *this = std::move(loaded);
}

void bus_state_t::add_place(const std::string &name_text)
{
    auto name = ::visa::read_resource_name(name_text);
    if (!name || name->bus == ::visa::resource_name_t::bus_t::other ||
        name_text.size() >= ::visa::find_buffer_bytes)
        throw fleet_error_t("resource \"" + name_text + "\": not a USB or TCPIP instrument name");
    if (!place_of_key.emplace(name->key, all_places.size()).second)
        throw fleet_error_t("resource \"" + name_text + "\": used twice");
    bus_place_t place;
    place.name_text = name_text;
    place.name = std::move(*name);
    place.instrument = instruments.size() - 1;
    all_places.push_back(std::move(place));
}

std::optional<place_t> bus_state_t::find(const ::visa::resource_name_t &name) const
{
    const auto found = place_of_key.find(name.key);
    if (found == place_of_key.end())
        return std::nullopt;
    return found->second;
}

std::optional<place_t> bus_state_t::find(std::string_view name) const
{
    const auto read = ::visa::read_resource_name(name);
    return read ? find(*read) : std::nullopt;
}

bool bus_state_t::is_present(place_t place) const
{
    const auto back = back_at(place);
    return back && bus_clock_t::now() >= *back;
}

std::optional<bus_time_t> bus_state_t::back_at(place_t place) const
{
    const bus_place_t &there = all_places[place];
    return there.plugged ? std::optional(instruments[there.instrument].away_until) : std::nullopt;
}

std::optional<pending_reply_t> bus_state_t::deliver(place_t place, std::string_view message)
{
    if (auto scripted = scripts.take(place, message))
        return pending_reply_t{std::move(*scripted), reply_time(place)};
    instrument_outcome_t outcome = instrument_at(place).receive(message);
    apply(outcome.effect, all_places[place].instrument);
    if (!outcome.reply)
        return std::nullopt;
    return pending_reply_t{std::move(*outcome.reply), reply_time(place)};
}

bus_time_t bus_state_t::reply_time(place_t place) const
{
    const auto delay = instruments[all_places[place].instrument].response_delay;
    return delay.count() == 0 ? at_once : bus_clock_t::now() + delay;
}

void bus_state_t::apply(instrument_effect_t effect, std::size_t instrument)
{
    if (effect == instrument_effect_t::none)
        return;
    if (effect == instrument_effect_t::reboot)
        instruments[instrument].away_until = bus_clock_t::now() + reboot_time;
    for (place_t place = 0; place < all_places.size(); ++place) {
        bus_place_t &there = all_places[place];
        if (there.instrument != instrument)
            continue;
        there.plugged = there.plugged && effect != instrument_effect_t::unplug;
        lose_connections(place);
    }
}

void bus_state_t::lose_connections(place_t place)
{
    ++all_places[place].connection;
    all_places[place].lock.end_all();
    wake(place);
}

void bus_state_t::unplug(place_t place)
{
    all_places[place].plugged = false;
    lose_connections(place);
}

void bus_state_t::wake(place_t place) const
{
    for (bus_session_t *const session : sessions)
        if (session->place() == place)
            session->wake();
}

} // namespace sim
