// SPDX-License-Identifier: MIT
#include "drv/drv_serial.h"

#include "drv/gui_thread.h"
#include "drv/reply_text.h"
#include "drv/usb_identity.h"

#include <QElapsedTimer>
#include <QMutexLocker>
#include <QSerialPortInfo>

namespace {

// Made before main and never deleted: closing a port while the process is being torn down could
// wait for a device that is gone, and the operating system closes it anyway.
const drv_serial_t &made_before_main = drv_serial_t::instance();

bool is_instrument(const QSerialPortInfo &port)
{
    return port.hasVendorIdentifier() && port.hasProductIdentifier() &&
           port.vendorIdentifier() == usb_identity::vendor &&
           port.productIdentifier() == usb_identity::product;
}

} // namespace

drv_serial_t &drv_serial_t::instance()
{
    static auto *const serial = new drv_serial_t;
    return *serial;
}

drv_serial_t::drv_serial_t()
{
    // Queued, because the port is still in use where it finds its error.
    QObject::connect(
        &port, &QSerialPort::errorOccurred, &port,
        [this](QSerialPort::SerialPortError error) { close_lost_port(error); },
        Qt::QueuedConnection);
}

/// A line that is gone stays readable without ever giving a byte; left open, it would keep the
/// event loop busy for good. An error that a newly opened port no longer has is an old one.
void drv_serial_t::close_lost_port(QSerialPort::SerialPortError error)
{
    const bool lost = error == QSerialPort::ReadError || error == QSerialPort::ResourceError;
    if (lost && port.error() == error)
        close();
}

std::vector<found_instrument_t> drv_serial_t::find()
{
    close();
    std::vector<found_instrument_t> instruments;
    int position = 0;
    for (const QSerialPortInfo &candidate : QSerialPortInfo::availablePorts())
        if (is_instrument(candidate))
            instruments.push_back({candidate.portName().toStdString(), ++position});
    return instruments;
}

bool drv_serial_t::open(const std::string &port_name)
{
    assert_gui_thread();
    port.setPortName(QString::fromStdString(port_name));
    return port.isOpen() || port.open(QIODevice::ReadWrite);
}

void drv_serial_t::close()
{
    if (port.isOpen())
        port.close();
}

bool drv_serial_t::write(const std::string &text)
{
    assert_gui_thread();
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

/// Both what Qt has read and what still waits in the operating system.
void drv_serial_t::discard_input()
{
    if (port.isOpen())
        port.clear(QSerialPort::Input);
}

/// USB hands a reply over in pieces at times. What is left of one would answer the next query.
void drv_serial_t::wait_for_line_end()
{
    QElapsedTimer timer;
    timer.start();
    while (!port.peek(port.bytesAvailable()).endsWith('\n') &&
           timer.elapsed() < transfer_timeout_ms && port.waitForReadyRead(piece_timeout_ms)) {
    }
}

bool drv_serial_t::query(const std::string &text, std::string &out)
{
    const QMutexLocker locker(&mutex);
    discard_input();
    if (!write(text) || !port.waitForReadyRead(transfer_timeout_ms))
        return false;
    wait_for_line_end();
    return read(out);
}
