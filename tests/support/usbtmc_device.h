// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <umockdev.h>
#include <vector>

/// A simulated instrument on USB as programs under umockdev see it: its folders in /sys and the
/// node of the kernel's usbtmc driver with reads, writes and what else the driver answers. As in
/// the driver, all who opened the node share one exchange, and a waiting read delays them.
///
/// A fault planted on the bus with a status makes the driver answer this errno. What concerns the
/// driver alone is counted there as setting an attribute. After a transfer that failed or came too
/// late the instrument refuses (EPIPE) every other until it is cleared. The node goes when the
/// instrument has left the bus or reboots; who had opened it gets no further than ENODEV.
class usbtmc_device_t
{
public:
    struct identity_t
    {
        std::string node; ///< "usbtmc0"
        std::string vendor;
        std::string product;
        std::string serial; ///< empty: has none
        std::string interface = "00";
    };

    /// Plugs it in; `bus` and `place` are the instrument behind it.
    usbtmc_device_t(UMockdevTestbed &testbed, sim::bus_t &bus, sim::place_t place,
                    const identity_t &identity);
    ~usbtmc_device_t();
    usbtmc_device_t(const usbtmc_device_t &) = delete;
    usbtmc_device_t &operator=(const usbtmc_device_t &) = delete;

    /// Takes the node away, in the middle of whatever goes on, and brings it back, unless it is
    /// away or there.
    void unplug();
    void plug();
    bool is_there() const { return is_plugged; }

    /// The file behind the node, whose permissions are the node's.
    std::string node_file() const;

    bool refuses_term_char = false; ///< as an instrument without that ability
    std::atomic<int> clears = 0;    ///< device clears received
    std::atomic<int> triggers = 0;
    std::atomic<int> writes = 0;
    std::atomic<bool> is_reading = false;     ///< somebody waits for a reply
    std::atomic<int> stalls_for_ms = 0;       ///< as long every call takes longer than it may
    std::atomic<int> drips_every_ms = 0;      ///< so often a read gets one byte and no end
    std::atomic<bool> is_out_of_turn = false; ///< the next read gets what answers no request

private:
    using answer_t = long; ///< negative: an errno
    using session_t = std::shared_ptr<sim::bus_session_t>;

    template <answer_t (usbtmc_device_t::*handle)(UMockdevIoctlClient &, sim::bus_session_t &)>
    static gboolean answer(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer device);
    static void note_opening(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer device);
    session_t session_of(UMockdevIoctlClient &client);
    void add_to_testbed();
    void leave_if_lost(const session_t &its);
    void take_node_away();

    answer_t note_transfer(answer_t result);
    answer_t clear(sim::bus_session_t &its);
    answer_t read(UMockdevIoctlClient &client, sim::bus_session_t &its);
    answer_t write(UMockdevIoctlClient &client, sim::bus_session_t &its);
    answer_t control(UMockdevIoctlClient &client, sim::bus_session_t &its);
    answer_t set_up(UMockdevIoctlClient &client);
    answer_t set_timeout(unsigned value);
    answer_t set_term_char(unsigned setting);

    const identity_t identity;
    UMockdevTestbed &testbed;
    sim::bus_t &bus;
    const sim::place_t place;
    UMockdevIoctlBase *handler = nullptr;
    std::mutex plugging;
    std::vector<std::string> folders; ///< in /sys: the device and what is in it
    session_t session;
    std::atomic<bool> is_plugged = false;
    std::atomic<unsigned> times_plugged = 0;
    std::atomic<bool> is_halted = false; ///< a transfer failed, and no clear has come since
    unsigned timeout_ms = 5000;
    bool sends_end = true;
    int term_char = -1;
    unsigned char attributes = 0; ///< of the last transfer that answered its request
};
