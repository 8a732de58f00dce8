// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/error_queue.h"
#include "sim/instrument/firmware_store.h"
#include "sim/instrument/instrument_config.h"
#include "sim/instrument/lan_config.h"
#include "sim/instrument/led_colors.h"
#include "sim/instrument/route_matrix.h"
#include "sim/instrument/status_registers.h"

#include <cstdint>
#include <string>

namespace sim {

/// What runs in the instrument, and with that which commands it knows. The values are bits
/// of a set, see command_t::modes.
enum class instrument_mode_t : std::uint8_t {
    normal = 1,  ///< a TMX with its firmware
    loader = 2,  ///< a TMX waiting for a host image
    foreign = 4, ///< another maker's instrument: common commands only
};

/// What happens to the instrument after a message.
enum class instrument_effect_t : std::uint8_t {
    none,
    reboot, ///< leaves the bus for a while, its sessions die
    unplug, ///< leaves the bus until it is plugged again
};

/// What a TMX says about itself; texts as they are reported.
struct product_identity_t
{
    std::string model;
    std::string serial;
    std::string version;
    std::string product_id;
};

/// Everything an instrument remembers.
struct instrument_state_t
{
    /// The instrument just switched on, with the configuration's routes already set.
    explicit instrument_state_t(const instrument_config_t &config);

    /// The reply to "*IDN?": maker, model, serial number, version.
    std::string identification() const;

    /// Queues an error and sets its event bit.
    void note_error(scpi_error_t error);

    /// Starts anew in the given mode: the routes, the errors and the status are gone, what
    /// was provisioned takes effect.
    void restart(instrument_mode_t next_mode);

    /// Colours, LAN settings and routes as delivered; provisioning not yet in effect is
    /// dropped. Identity and MAC address stay.
    void reset_to_factory();

    instrument_mode_t mode;
    std::string foreign_identity;
    product_identity_t identity;
    product_identity_t provisioned; ///< in effect after the next restart
    std::string temperature;
    std::string upgrade_id;
    route_matrix_t routes;
    led_colors_t colors;
    lan_config_t lan;
    firmware_store_t firmware;
    error_queue_t errors;
    status_registers_t status;
    instrument_effect_t effect = instrument_effect_t::none; ///< of the message being executed
    bool reply_waiting = false; ///< an earlier unit of the message has been answered
};

} // namespace sim
