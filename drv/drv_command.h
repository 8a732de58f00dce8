// SPDX-License-Identifier: MIT
#pragma once

#include "drv/command_table.h"
#include "drv/instrument_records.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// `drv_command_t::link_mode`: whether the VISA link carries commands.
namespace link_modes {
constexpr std::uint8_t connected = 0;
constexpr std::uint8_t upgrading = 1;
constexpr std::uint8_t not_connected = 2;
} // namespace link_modes

/// The instrument's command set: builds the texts, sends them over VISA or, where no VISA library
/// is ready, over the serial port, and reads the replies into texts.
///
/// Nothing here reports an error to the user. Every operation is synchronous and, unless it says
/// otherwise, returns false when a command could not be sent or got no answer; what it was to fill
/// is then left as it was. Use from the GUI thread.
class drv_command_t
{
public:
    /// The process-wide command object.
    static drv_command_t *instance();

    drv_command_t(const drv_command_t &) = delete;
    drv_command_t &operator=(const drv_command_t &) = delete;

    void set_link_mode(std::uint8_t mode) noexcept;
    std::uint8_t link_mode() const noexcept;

    /// The text of a command; empty for an id that names nothing.
    const std::string &command_text(command_id id);
    /// Sends `text` as it stands.
    bool send_command(const std::string &text);
    /// Reads a reply that is due, without its last character.
    bool read_reply(std::string &out);
    /// Sends `text` and reads the reply, without its last character. `force` sends it over VISA
    /// even while `link_mode` says that nothing is connected.
    bool query(const std::string &text, std::string &out, bool force = false);

    /// Opens the instrument's serial port; true also when one is open already.
    bool serial_open(const std::string &port_name);
    void serial_close();

    /// Sends the settings that go with the DHCP flag, stopping at the first that fails, and keeps
    /// them when all were sent.
    bool lan_apply(const lan_settings_t &settings);
    /// Reads all settings. On failure those that were read before it are kept, but not copied.
    bool lan_read(lan_settings_t &settings);
    /// Reads model, serial number, version and product id; as `lan_read` on failure.
    bool device_info_read(device_info_t &info);
    /// Reads the device information and the LAN settings again; always true.
    bool device_refresh();

    /// Sets the LED colour ("Cyan", "Blue", "Red", "Green") of a VNA port.
    bool set_color(const std::string &port, const std::string &colour);
    /// Reads a VNA port's LED colour ("CYAN", "BLUE", "RED", "GREEN") into `out`. Always returns
    /// false: judge by the text.
    bool get_color(const std::string &port, std::string &out);
    /// Routes VNA port `first` to test port `second`; "0" removes the route.
    bool add_route(const std::string &first, const std::string &second);
    /// Reads the routes of four VNA ports and copies the test-port label of `port`.
    bool route_of(const std::string &port, std::string &out);
    /// The same for two VNA ports: for "C" and "D" the reply tells nothing, and `out` becomes what
    /// is held for them.
    bool route_of_ab(const std::string &port, std::string &out);
    /// Reads which firmware packages the instrument accepts; fields that the reply lacks are left
    /// alone.
    bool upgrade_id_read(upgrade_id_t &record);

private:
    using text_map_t = std::map<std::string, std::string>;

    drv_command_t();
    ~drv_command_t() = default;

    bool may_exchange() const;
    bool ask(command_id id, std::string &out);
    bool read_route(const std::string &port, const std::vector<std::string> &reported_ports,
                    std::string &out);

    lan_settings_t lan_cache;
    device_info_t info_cache;
    command_table_t command_table;
    text_map_t routes;
    std::uint8_t mode = link_modes::not_connected;
};
