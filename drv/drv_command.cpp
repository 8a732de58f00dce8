// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"

#include "drv/drv_device.h"
#include "drv/drv_serial.h"
#include "drv/reply_text.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

using reply_buffer_t = std::array<char, drv_command_t::reply_buffer_bytes>;

std::string text_of(const reply_buffer_t &buffer)
{
    return {buffer.begin(), std::find(buffer.begin(), buffer.end(), '\0')};
}

/// The comma-separated fields of a reply; an empty reply is one empty field.
std::vector<std::string> fields_of(const std::string &reply)
{
    std::vector<std::string> fields;
    std::size_t begin = 0;
    for (std::size_t comma = reply.find(','); comma != std::string::npos;
         comma = reply.find(',', begin)) {
        fields.push_back(reply.substr(begin, comma - begin));
        begin = comma + 1;
    }
    fields.push_back(reply.substr(begin));
    return fields;
}

} // namespace

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

bool drv_command_t::send_command(const std::string &text)
{
    drv_device_t *const device = drv_device_t::instance();
    if (!device->visa_is_ready())
        return drv_serial_t::instance().write(text);
    return mode == link_modes::connected && device->link_write(text.data(), text.size());
}

bool drv_command_t::read_reply(std::string &out)
{
    drv_device_t *const device = drv_device_t::instance();
    if (!device->visa_is_ready())
        return drv_serial_t::instance().read(out);
    reply_buffer_t buffer{};
    return mode == link_modes::connected && device->link_read(buffer.data(), buffer.size()) != 0 &&
           take_reply(text_of(buffer), out);
}

bool drv_command_t::query(const std::string &text, std::string &out, bool force)
{
    drv_device_t *const device = drv_device_t::instance();
    if (!device->visa_is_ready())
        return drv_serial_t::instance().query(text, out);
    reply_buffer_t buffer{};
    return (mode == link_modes::connected || force) &&
           device->link_query(text, buffer.data(), buffer.size()) &&
           take_reply(text_of(buffer), out);
}

bool drv_command_t::serial_open(const std::string &port_name)
{
    return drv_serial_t::instance().open(QString::fromStdString(port_name));
}

void drv_command_t::serial_close()
{
    drv_serial_t::instance().close();
}

bool drv_command_t::ask(command_id id, std::string &out)
{
    return query(command_text(id), out);
}

bool drv_command_t::send_lan_step(const set_step_t &step, const lan_settings_t &settings)
{
    return send_command(command_text(step.id) + settings.*step.field);
}

bool drv_command_t::lan_apply(const lan_settings_t &settings)
{
    static const std::vector<set_step_t> dhcp_steps{
        {command_id::set_dhcp, &lan_settings_t::dhcp},
        {command_id::set_host_name, &lan_settings_t::host_name},
    };
    static const std::vector<set_step_t> fixed_steps{
        {command_id::set_dhcp, &lan_settings_t::dhcp},
        {command_id::set_ip_address, &lan_settings_t::ip_address},
        {command_id::set_subnet_mask, &lan_settings_t::subnet_mask},
        {command_id::set_gateway, &lan_settings_t::gateway},
        {command_id::set_host_name, &lan_settings_t::host_name},
    };
    const std::vector<set_step_t> &steps = settings.dhcp == "1" ? dhcp_steps : fixed_steps;
    for (const set_step_t &step : steps) {
        if (!send_lan_step(step, settings))
            return false;
    }
    lan_cache = settings;
    return true;
}

bool drv_command_t::lan_read(lan_settings_t &settings)
{
    const bool complete = ask(command_id::dhcp, lan_cache.dhcp) &&
                          ask(command_id::ip_address, lan_cache.ip_address) &&
                          ask(command_id::subnet_mask, lan_cache.subnet_mask) &&
                          ask(command_id::gateway, lan_cache.gateway) &&
                          ask(command_id::host_name, lan_cache.host_name) &&
                          ask(command_id::mac_address, lan_cache.mac_address);
    if (complete)
        settings = lan_cache;
    return complete;
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
    const std::vector<std::string> fields = fields_of(reply);
    int *const places[] = {&record.id, &record.lowest, &record.highest, &record.exact};
    const std::size_t count = std::min(fields.size(), std::size(places));
    for (std::size_t index = 0; index < count; ++index)
        *places[index] = static_cast<int>(std::strtol(fields[index].c_str(), nullptr, 10));
    return true;
}
