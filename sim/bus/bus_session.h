// SPDX-License-Identifier: MIT
#pragma once

#include "sim/bus/bus_types.h"
#include "sim/bus/fault_plan.h"
#include "sim/bus/message_exchange.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

class bus_t;

/// One client's connection to one place on the bus: a VISA session, a VXI-11 link, a raw socket, a
/// serial line. bus_t::open() makes it.
///
/// Each session has a message exchange of its own (IEEE 488.2, chapter 6, one for each controller):
/// its unfinished message and its unread reply. The instrument behind it is shared. Every function
/// may be called from any thread, also while another call on the session waits. `wait_for_lock` is
/// until when an operation waits while another session has the lock on the place.
class bus_session_t
{
public:
    /// For bus_t::open() only.
    bus_session_t(bus_t &bus, place_t place, std::uint64_t connection);

    /// Closes.
    ~bus_session_t();
    bus_session_t(const bus_session_t &) = delete;
    bus_session_t &operator=(const bus_session_t &) = delete;

    /// Takes bytes of a message. They make a message together with those before once `end` comes
    /// or they end in a line feed; the instrument executes it before this returns. A reply not read
    /// yet is lost to the new bytes (-410 on the instrument). No bytes with `end` complete what was
    /// written before; no bytes without do nothing.
    bus_outcome_t write(std::string_view bytes, bool end, bus_time_t wait_for_lock = at_once);

    /// Waits for a reply and stores up to `capacity` bytes of it, up to and with `term_char` if one
    /// is given. The rest stays for the next read. When nothing was asked: -420 on the instrument,
    /// and the wait ends at the deadline.
    bus_read_t read(char *target, std::size_t capacity, bus_time_t deadline,
                    std::optional<char> term_char = std::nullopt,
                    bus_time_t wait_for_lock = at_once);

    /// When the reply that waits, or is on its way, can be read: for transports that do not ask.
    /// Nothing when there is none.
    std::optional<bus_time_t> reply_due() const;

    /// Empties both directions (device clear); the instrument's state and errors stay.
    bus_outcome_t clear(bus_time_t wait_for_lock = at_once);

    /// The status byte: bit 4 (MAV) while a reply can be read by this session, the others as
    /// "*STB?".
    bus_outcome_t read_status_byte(std::uint8_t &byte, bus_time_t wait_for_lock = at_once);

    /// A group execute trigger. The instruments have nothing to trigger (DT0) and ignore it.
    bus_outcome_t trigger(bus_time_t wait_for_lock = at_once);

    /// Locks the place against all other sessions, or with `key` against those that do not share
    /// the lock under the same key; waits until the deadline. Locks nest, each kind for itself. A
    /// session that shares the lock may take the exclusive one too. An exclusive lock bars a shared
    /// one, also to its own session. The locks end with the session and with a lost connection.
    bus_lock_t lock_exclusive(bus_time_t deadline);
    bus_lock_t lock_shared(const std::string &key, bus_time_t deadline);

    /// Gives back one lock, an exclusive one first.
    bus_lock_t unlock();

    /// The lock on the place, whoever has it.
    ViAccessMode lock_state() const;

    /// False once the connection is lost or closed.
    bool is_connected() const;

    /// Ends the session and its locks; calls that wait return bus_result_t::closed.
    void close();

    place_t place() const { return where; }

private:
    friend class bus_t;
    friend class bus_state_t;

    using guard_t = std::unique_lock<std::mutex>;
    using attempt_t = std::optional<ViStatus> (*)(::visa::resource_lock_t &lock,
                                                  const bus_session_t &who, const std::string &key);

    // All of these with the bus's mutex held; those that take the guard may release it to wait.

    bus_outcome_t begin(guard_t &guard, operation_t operation, bus_time_t wait_for_lock,
                        std::vector<fault_t> &reply_faults);
    bus_outcome_t suffer(guard_t &guard, operation_t operation, std::vector<fault_t> &reply_faults);
    bus_lock_t lock(const std::string &key, bus_time_t deadline, attempt_t attempt);
    bus_lock_t after(ViStatus verdict, const ::visa::resource_lock_t &its_lock) const;
    void deliver(const std::string &message, const std::vector<fault_t> &reply_faults);
    void begin_read(const std::vector<fault_t> &reply_faults);
    bus_result_t wait_for_reply(guard_t &guard, bus_time_t deadline);
    void wait(guard_t &guard, bus_time_t until);
    bus_result_t connection_state() const;
    void wake() { changed.notify_all(); }

    bus_t &bus;
    const place_t where;
    const std::uint64_t connection; ///< which connection of the place the session belongs to
    message_exchange_t exchange;
    std::condition_variable changed;
    bool is_closed = false;
};

} // namespace sim
