// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"

#include "drv/drv_serial.h"
#include "drv/gui_thread.h"
#include "drv/lan_fields.h"
#include "drv/reply_text.h"
#include "drv/transport.h"

#include <algorithm>

drv_command_t *drv_command_t::instance()
{
    static drv_command_t command;
    return &command;
}

drv_command_t::drv_command_t()
{
    fill_command_table(command_table);
}

void drv_command_t::set_link_mode(std::uint8_t new_mode) noexcept
{
    mode = new_mode;
}

std::uint8_t drv_command_t::link_mode() const noexcept
{
    return mode;
}

const std::string &drv_command_t::command_text(command_id id)
{
    return command_table[id];
}

/// Without VISA the link mode says nothing: an open serial line is connected.
bool drv_command_t::may_exchange() const
{
    assert_gui_thread();
    return mode == link_modes::connected || !transport_t::current().heeds_link_mode();
}

bool drv_command_t::send_command(const std::string &text)
{
    return may_exchange() && transport_t::current().write(text);
}

bool drv_command_t::read_reply(std::string &out)
{
    return may_exchange() && transport_t::current().read(out);
}

bool drv_command_t::query(const std::string &text, std::string &out, bool force)
{
    return (may_exchange() || force) && transport_t::current().query(text, out);
}

bool drv_command_t::serial_open(const std::string &port_name)
{
    return drv_serial_t::instance().open(port_name);
}

void drv_command_t::serial_close()
{
    drv_serial_t::instance().close();
}

bool drv_command_t::ask(command_id id, std::string &out)
{
    return query(command_text(id), out);
}

bool drv_command_t::lan_apply(const lan_settings_t &settings)
{
    const bool fixed_address = settings.dhcp != "1";
    const auto send = [&](const lan_field_t &field) {
        const bool due = field.sending == lan_sending_t::always ||
                         (field.sending == lan_sending_t::with_fixed_address && fixed_address);
        return !due || send_command(command_text(field.set) + settings.*field.text);
    };
    if (!std::all_of(lan_fields.begin(), lan_fields.end(), send))
        return false;
    lan_cache = settings;
    return true;
}

bool drv_command_t::lan_read(lan_settings_t &settings)
{
    const auto read = [this](const lan_field_t &field) {
        return ask(field.query, lan_cache.*field.text);
    };
    if (!std::all_of(lan_fields.begin(), lan_fields.end(), read))
        return false;
    settings = lan_cache;
    return true;
}

bool drv_command_t::device_info_read(device_info_t &info)
{
    const bool complete = ask(command_id::model_name, info_cache.model_name) &&
                          ask(command_id::serial_number, info_cache.serial_number) &&
                          ask(command_id::software_version, info_cache.software_version) &&
                          ask(command_id::product_id, info_cache.product_id);
    if (complete)
        info = info_cache;
    return complete;
}

bool drv_command_t::device_refresh()
{
    device_info_read(info_cache);
    lan_read(lan_cache);
    return true;
}

bool drv_command_t::set_color(const std::string &port, const std::string &colour)
{
    return send_command(command_text(command_id::set_color) + port + "," + colour);
}

bool drv_command_t::get_color(const std::string &port, std::string &out)
{
    query(command_text(command_id::get_color) + port, out);
    return false;
}

bool drv_command_t::add_route(const std::string &first, const std::string &second)
{
    const bool sent = send_command(command_text(command_id::add_route) + first + second);
    if (sent)
        routes[first] = second;
    return sent;
}

bool drv_command_t::route_of(const std::string &port, std::string &out)
{
    static const std::vector<std::string> four_ports{"A", "B", "C", "D"};
    return read_route(port, four_ports, out);
}

bool drv_command_t::route_of_ab(const std::string &port, std::string &out)
{
    static const std::vector<std::string> two_ports{"A", "B"};
    return read_route(port, two_ports, out);
}

/// A port that the reply is too short to name is held as not routed.
bool drv_command_t::read_route(const std::string &port,
                               const std::vector<std::string> &reported_ports, std::string &out)
{
    std::string reply;
    if (!ask(command_id::routes, reply))
        return false;
    std::vector<std::string> fields = fields_of(reply);
    fields.resize(std::max(fields.size(), reported_ports.size()));
    for (std::size_t index = 0; index < reported_ports.size(); ++index)
        routes[reported_ports[index]] = fields[index];
    out = routes[port];
    return true;
}

bool drv_command_t::upgrade_id_read(upgrade_id_t &record)
{
    std::string reply;
    if (!ask(command_id::upgrade_id, reply))
        return false;
    read_upgrade_id(reply, record);
    return true;
}
