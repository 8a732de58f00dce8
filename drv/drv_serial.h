// SPDX-License-Identifier: MIT
#pragma once

#include "drv/transport.h"

#ifndef CORVANE_WITHOUT_SERIAL_PORT
#include <QMutex>
#include <QSerialPort>
#endif

/// The instrument's USB serial port, which carries the commands when there is no VISA library.
///
/// Belongs to the GUI thread; queries are serialised by a mutex. In a build without Qt's serial
/// port module no port is ever found or opened.
class drv_serial_t final : public transport_t
{
public:
    /// How long a write, and the wait for a reply, may take.
    static constexpr int transfer_timeout_ms = 200;
    /// How long the next piece of a reply that has begun, and has no line end yet, may take.
    static constexpr int piece_timeout_ms = 20;

    /// The process-wide port, made during static initialisation.
    static drv_serial_t &instance();

    bool heeds_link_mode() const noexcept override { return false; }
    /// Closes the port and lists those that belong to a TMX.
    std::vector<found_instrument_t> find() override;
    /// Names the port and opens it for reading and writing. An open port stays as it is and counts
    /// as opened.
    bool open(const std::string &port_name) override;
    void close();
    /// Sends the bytes of `text`; false only when the port is not open.
    bool write(const std::string &text) override;
    /// Takes all bytes that have arrived, less the last one, the line terminator. False when there
    /// are none; `out` is then left alone.
    bool read(std::string &out) override;
    /// Discards what has arrived unasked or too late, writes and reads the reply, if one begins
    /// within `transfer_timeout_ms`. A reply that comes in pieces is read up to its line end, as
    /// long as the pieces follow closely.
    bool query(const std::string &text, std::string &out) override;

private:
    drv_serial_t();
    ~drv_serial_t() = default;

#ifndef CORVANE_WITHOUT_SERIAL_PORT
    void close_lost_port(QSerialPort::SerialPortError error);
    void discard_input();
    void wait_for_line_end();

    QSerialPort port;
    QMutex mutex;
#endif
};
