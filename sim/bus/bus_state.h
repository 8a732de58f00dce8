// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"
#include "sim/bus/fault_plan.h"
#include "sim/bus/fleet.h"
#include "sim/bus/message_exchange.h"
#include "sim/bus/scripted_replies.h"
#include "sim/bus/traffic_log.h"
#include "sim/instrument/sim_instrument.h"
#include "visa/resource_lock.h"
#include "visa/resource_name.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sim {

class bus_session_t;

/// One place where an instrument is found: a USB socket or a LAN address.
struct bus_place_t
{
    std::string name_text; ///< as in the fleet
    ::visa::resource_name_t name;
    std::size_t instrument = 0;
    bool plugged = true;
    std::uint64_t connection = 0; ///< grows with every loss, so that older sessions are dead
    ::visa::resource_lock_t lock;
};

/// Everything on the bus: the instruments with their places, cables, reboots and locks, what is to
/// go wrong and what has arrived. Guarded by the mutex of bus_t.
class bus_state_t
{
public:
    /// An empty bus.
    bus_state_t() = default;

    /// Replaces the instruments and drops faults and scripts. Throws fleet_error_t for a resource
    /// name that is malformed or used twice, and then changes nothing.
    void load(const fleet_t &fleet);

    const std::vector<bus_place_t> &places() const { return all_places; }
    bus_place_t &place(place_t place) { return all_places[place]; }
    const bus_place_t &place(place_t place) const { return all_places[place]; }

    std::optional<place_t> find(const ::visa::resource_name_t &name) const;
    std::optional<place_t> find(std::string_view name) const;

    bool is_present(place_t place) const;

    /// When the instrument is back from its reboot; nothing when its cable is out.
    std::optional<bus_time_t> back_at(place_t place) const;

    sim_instrument_t &instrument_at(place_t place)
    {
        return instruments[all_places[place].instrument].instrument;
    }

    /// Hands a complete message to the instrument, or to a scripted reply, and does what the
    /// instrument asks for: reboots, unplugs.
    std::optional<pending_reply_t> deliver(place_t place, std::string_view message);

    void unplug(place_t place);
    void plug(place_t place) { all_places[place].plugged = true; }

    /// Wakes the calls that wait at a place, so that they look again.
    void wake(place_t place) const;

    std::chrono::milliseconds default_timeout() const { return session_timeout; }

    fault_plan_t faults;
    scripted_replies_t scripts;
    traffic_log_t log;
    std::vector<bus_session_t *> sessions; ///< the open ones

private:
    struct bus_instrument_t
    {
        sim_instrument_t instrument;
        std::chrono::milliseconds response_delay;
        bus_time_t away_until = at_once;
    };

    void add_place(const std::string &name_text);
    void apply(instrument_effect_t effect, std::size_t instrument);
    void lose_connections(place_t place);
    bus_time_t reply_time(place_t place) const;

    std::vector<bus_instrument_t> instruments;
    std::vector<bus_place_t> all_places;
    std::unordered_map<std::string, place_t> place_of_key;
    std::chrono::milliseconds session_timeout{2000};
    std::chrono::milliseconds reboot_time{300};
};

} // namespace sim
