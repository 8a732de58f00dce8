// SPDX-License-Identifier: MIT
#include "drv/drv_device.h"

#include "drv/pause.h"

#include <QMutex>
#include <QMutexLocker>

#include <array>
#include <cstring>

namespace {

/// What every user of the link shares. Only `link_query` locks; see the class.
struct link_state_t
{
    ViSession session = 0;
    std::string resource_name;
    std::string lan_address;
    QMutex mutex;
    bool usb_link_flag = true;
};

link_state_t link;

std::size_t text_length(const char *buffer, std::size_t size)
{
    const void *end = std::memchr(buffer, '\0', size);
    return end != nullptr ? static_cast<std::size_t>(static_cast<const char *>(end) - buffer)
                          : size;
}

} // namespace

drv_device_t *drv_device_t::instance()
{
    static drv_device_t device;
    return &device;
}

drv_device_t::drv_device_t()
{
    drv_device_t::visa_init();
}

bool drv_device_t::usb_connect()
{
    for (int attempt = 0; attempt < usb_open_attempts; ++attempt) {
        if (session_open(link.resource_name, link.session) == vi_success)
            return true;
        pause_ms(usb_retry_pause_ms);
    }
    if (find_usb() != vi_success)
        return false;
    link.resource_name = found_resource();
    return session_open(link.resource_name, link.session) == vi_success;
}

bool drv_device_t::usb_connect_resource(const std::string &name)
{
    link_disconnect();
    return session_open(name, link.session) == vi_success;
}

bool drv_device_t::lan_connect(const std::string &address)
{
    const std::string resource = "TCPIP0::" + address + "::INSTR";
    if (session_open(resource, link.session) != vi_success)
        return false;
    link.lan_address = address;
    link.resource_name = resource;
    return true;
}

bool drv_device_t::link_disconnect()
{
    if (session_close(link.session) != vi_success)
        return false;
    link.resource_name.clear();
    link.session = 0;
    return true;
}

bool drv_device_t::link_resource_name(std::string &out) const
{
    if (link.session == 0)
        return false;
    out = link.resource_name;
    return true;
}

bool drv_device_t::link_write(const char *text, std::size_t length)
{
    return session_write(link.session, text, length);
}

int drv_device_t::link_read(char *buffer, std::size_t size)
{
    if (!session_read(link.session, buffer, size))
        return -1;
    return static_cast<int>(text_length(buffer, size));
}

bool drv_device_t::link_query(const std::string &command, char *buffer, std::size_t size)
{
    const QMutexLocker locker(&link.mutex);
    if (!link_write(command.data(), command.size()))
        return false;
    pause_ms(query_pause_ms);
    return link_read(buffer, size) != 0;
}

bool drv_device_t::link_opc_wait()
{
    std::array<char, 20> reply{};
    return link_query("*OPC?", reply.data(), reply.size());
}

bool drv_device_t::is_usb_link() const noexcept
{
    return link.usb_link_flag;
}

void drv_device_t::set_usb_link(bool usb) noexcept
{
    link.usb_link_flag = usb;
}
