// SPDX-License-Identifier: MIT
#include "drv/drv_device.h"

#include "drv/pause.h"

#include <QByteArray>
#include <QMutex>
#include <QMutexLocker>

#include <array>

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

link_state_t shared_link;

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
        if (session_open(shared_link.resource_name, shared_link.session) == vi_success)
            return true;
        pause_ms(usb_retry_pause_ms);
    }
    if (find_usb() != vi_success)
        return false;
    shared_link.resource_name = found_resource();
    return session_open(shared_link.resource_name, shared_link.session) == vi_success;
}

bool drv_device_t::usb_connect_resource(const std::string &name)
{
    link_disconnect();
    return session_open(name, shared_link.session) == vi_success;
}

bool drv_device_t::lan_connect(const std::string &address)
{
    const std::string resource = "TCPIP0::" + address + "::INSTR";
    if (session_open(resource, shared_link.session) != vi_success)
        return false;
    shared_link.lan_address = address;
    shared_link.resource_name = resource;
    return true;
}

bool drv_device_t::link_disconnect()
{
    if (session_close(shared_link.session) != vi_success)
        return false;
    shared_link.resource_name.clear();
    shared_link.session = 0;
    return true;
}

bool drv_device_t::link_resource_name(std::string &out) const
{
    if (shared_link.session == 0)
        return false;
    out = shared_link.resource_name;
    return true;
}

bool drv_device_t::link_write(const char *text, std::size_t length)
{
    return session_write(shared_link.session, text, length);
}

int drv_device_t::link_read(char *buffer, std::size_t size)
{
    if (!session_read(shared_link.session, buffer, size))
        return -1;
    return static_cast<int>(qstrnlen(buffer, static_cast<uint>(size)));
}

bool drv_device_t::link_query(const std::string &command, char *buffer, std::size_t size)
{
    const QMutexLocker locker(&shared_link.mutex);
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
    return shared_link.usb_link_flag;
}

void drv_device_t::set_usb_link(bool usb) noexcept
{
    shared_link.usb_link_flag = usb;
}
