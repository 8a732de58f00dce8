// SPDX-License-Identifier: MIT
#pragma once

#include "sim/fleet.h"
#include "sim/sim_instrument.h"
#include "sim/visa/resource_expression.h"
#include "sim/visa/resource_name.h"
#include "sim/visa/visa_session.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sim::visa {

/// One place where an instrument is found: a USB socket or a LAN address.
struct bus_resource_t
{
    std::string name_text;
    resource_name_t name;
    std::size_t instrument = 0;
    bool plugged = true;
    std::uint64_t connection = 0; ///< grows with every loss, so that older sessions are dead
};

/// The instruments with their resources, cables and reboots. Guarded by the library's mutex.
class visa_bus_t
{
public:
    /// An empty bus.
    visa_bus_t() = default;

    /// Throws fleet_error_t for a resource name that is malformed or used twice.
    explicit visa_bus_t(const fleet_t &fleet);

    /// The names of the resources on the bus that match, in the fleet's order.
    std::vector<std::string> find(const resource_expression_t &expression) const;

    /// The resource of a well-formed name, present or not.
    std::optional<std::size_t> resource_of(const resource_name_t &name) const;

    /// The resource of a name as it is typed; nothing for a malformed or unknown one.
    std::optional<std::size_t> resource_of(std::string_view name) const;

    bool is_present(std::size_t resource) const;
    bool is_connected(const visa_session_t &session) const;

    /// Hands a complete message to the instrument and does what it asks for: reboots, unplugs.
    std::optional<pending_reply_t> deliver(std::size_t resource, std::string_view message);

    void unplug(std::size_t resource);
    void plug(std::size_t resource);

    const bus_resource_t &resource(std::size_t index) const { return resources[index]; }
    sim_instrument_t &instrument_at(std::size_t index)
    {
        return instruments[resources[index].instrument].instrument;
    }

    /// When a reply that is given now arrives.
    bus_clock_t::time_point reply_time(std::size_t resource) const;

    ViUInt32 default_timeout_ms() const { return default_timeout; }

private:
    struct bus_instrument_t
    {
        sim_instrument_t instrument;
        std::chrono::milliseconds response_delay;
        bus_clock_t::time_point away_until;
    };

    void add_resource(const std::string &name_text);
    void apply(instrument_effect_t effect, std::size_t instrument);

    std::vector<bus_instrument_t> instruments;
    std::vector<bus_resource_t> resources;
    std::unordered_map<std::string, std::size_t> resource_of_key;
    ViUInt32 default_timeout = 2000;
    std::chrono::milliseconds reboot_time{300};
};

} // namespace sim::visa
