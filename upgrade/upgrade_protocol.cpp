// SPDX-License-Identifier: MIT
#include "upgrade/upgrade_protocol.h"

#include "drv/drv_device.h"
#include "drv/pause.h"

#include <QThread>

#include <array>
#include <cstring>

namespace {

constexpr const char *ready_query = "UPREADY?";
constexpr const char *ready_reply = "1\n";
constexpr std::size_t ready_reply_bytes = 2;

// Both go out with their terminating zero, which the sizes include.
constexpr char reboot_command[] = "REBOOT";
constexpr char loader_command[] = "REBOOT 1";

bool reconnect()
{
    pause_ms(reboot_pause_ms);
    return drv_device_t::instance()->usb_connect();
}

} // namespace

bool wait_ready()
{
    std::array<char, 5> reply{};
    for (int attempt = 0; attempt < ready_attempts; ++attempt) {
        if (QThread::currentThread()->isInterruptionRequested())
            return false;
        drv_device_t::instance()->link_query(ready_query, reply.data(), ready_reply_bytes);
        if (std::strcmp(reply.data(), ready_reply) == 0)
            return true;
    }
    return false;
}

bool reboot()
{
    drv_device_t *const device = drv_device_t::instance();
    if (device->link_write(reboot_command, sizeof reboot_command))
        device->link_disconnect();
    return reconnect();
}

bool reboot_to_loader()
{
    drv_device_t *const device = drv_device_t::instance();
    device->link_write(loader_command, sizeof loader_command);
    device->link_disconnect();
    return reconnect();
}
