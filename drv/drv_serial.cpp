// SPDX-License-Identifier: MIT
#include "drv/drv_serial.h"

#include "drv/reply_text.h"

#include <QMutexLocker>

namespace {

// Made before main and never deleted: closing a port while the process is being torn down could
// wait for a device that is gone, and the operating system closes it anyway.
const drv_serial_t &made_before_main = drv_serial_t::instance();

} // namespace

drv_serial_t &drv_serial_t::instance()
{
    static auto *const serial = new drv_serial_t;
    return *serial;
}

bool drv_serial_t::open(const QString &port_name)
{
    port.setPortName(port_name);
    return port.isOpen() || port.open(QIODevice::ReadWrite);
}

void drv_serial_t::close()
{
    if (port.isOpen())
        port.close();
}

bool drv_serial_t::write(const std::string &text)
{
    if (!port.isOpen())
        return false;
    port.write(text.data(), static_cast<qint64>(text.size()));
    port.waitForBytesWritten(transfer_timeout_ms);
    return true;
}

bool drv_serial_t::read(std::string &out)
{
    return take_reply(port.readAll().toStdString(), out);
}

bool drv_serial_t::query(const std::string &text, std::string &out)
{
    const QMutexLocker locker(&mutex);
    return write(text) && port.waitForReadyRead(transfer_timeout_ms) && read(out);
}
