// SPDX-License-Identifier: MIT
#pragma once

#include "drv/drv_visa.h"

/// The one link to the instrument: a VISA session over USB or LAN.
///
/// The session, its resource name and the USB flag are process-wide and not locked; use them from
/// the GUI thread, or from the upgrade thread while it runs. Only `link_query` is serialised.
class drv_device_t final : public drv_visa_t
{
public:
    /// The pause between a query's write and its read.
    static constexpr unsigned long query_pause_ms = 10;
    static constexpr int usb_open_attempts = 10;
    static constexpr unsigned long usb_retry_pause_ms = 500;

    /// The process-wide link; the first call opens the VISA library.
    static drv_device_t *instance();

    /// Reopens the remembered USB resource: ten attempts half a second apart, then one on the
    /// first USB instrument found, whose name is remembered instead.
    bool usb_connect();
    /// Closes the open session, whatever comes of it, and opens the resource `name`. The name is
    /// not remembered.
    bool usb_connect_resource(const std::string &name);
    /// Opens the instrument at the IPv4 address and remembers address and resource name. A
    /// session that was open is replaced without being closed.
    bool lan_connect(const std::string &address);
    /// Closes the session; a failure keeps session and resource name as they were.
    bool link_disconnect();
    /// Copies the remembered resource name; false, with `out` left alone, without a session.
    bool link_resource_name(std::string &out) const;

    /// Writes exactly `length` bytes; nothing is added.
    bool link_write(const char *text, std::size_t length);
    /// Reads at most `size` bytes. Returns the length of the text up to its first NUL, or -1 on
    /// failure.
    int link_read(char *buffer, std::size_t size);
    /// Writes `command` and reads the reply into the zero-filled `buffer`, under the link's mutex.
    /// False when the write failed or an empty text was read; a read that fails counts as an
    /// answer, so look at the buffer.
    bool link_query(const std::string &command, char *buffer, std::size_t size);
    /// Waits until the instrument has completed its operations (IEEE 488.2 "*OPC?"); the result
    /// is the query's.
    bool link_opc_wait();

    /// True after a USB connection (and at start), false after a LAN one.
    bool is_usb_link() const noexcept;
    void set_usb_link(bool usb) noexcept;

private:
    drv_device_t();
    ~drv_device_t() = default;
};
