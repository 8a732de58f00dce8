// SPDX-License-Identifier: MIT
#include "sim/bus/bus_session.h"

#include "sim/bus/bus.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

// A wait without an end is cut into pieces that every clock can add.
constexpr std::chrono::hours longest_wait{1};

bool is_ready(const std::optional<pending_reply_t> &reply)
{
    return reply && (reply->ready_at == at_once || reply->ready_at <= bus_clock_t::now());
}

} // namespace

bus_session_t::bus_session_t(bus_t &its_bus, place_t place, std::uint64_t its_connection)
    : bus(its_bus), where(place), connection(its_connection)
{
}

bus_session_t::~bus_session_t()
{
    close();
}

bus_outcome_t bus_session_t::write(std::string_view bytes, bool end, bus_time_t wait_for_lock)
{
    guard_t guard(bus.mutex);
    std::vector<fault_t> reply_faults;
    const auto outcome = begin(guard, operation_t::write, wait_for_lock, reply_faults);
    if (!outcome.ok())
        return outcome;
    if (!bytes.empty()) {
        if (exchange.drop_reply())
            bus.state.instrument_at(where).note_query_error(scpi_error_t::query_interrupted);
        bus.state.log.note(bus.state.place(where).name_text, bytes);
        exchange.unfinished_message.append(bytes);
        end = end || bytes.back() == '\n';
    }
    if (end && !exchange.unfinished_message.empty())
        deliver(std::exchange(exchange.unfinished_message, {}), reply_faults);
    return outcome;
}

void bus_session_t::deliver(const std::string &message, const std::vector<fault_t> &reply_faults)
{
    exchange.reply = bus.state.deliver(where, message);
    const bool answered = exchange.reply.has_value();
    for (const fault_t &fault : reply_faults)
        apply_reply_fault(fault, exchange.reply);
    exchange.reply_lost = answered && !exchange.reply;
    wake();
}

bus_read_t bus_session_t::read(char *target, std::size_t capacity, bus_time_t deadline,
                               std::optional<char> term_char, bus_time_t wait_for_lock)
{
    guard_t guard(bus.mutex);
    std::vector<fault_t> reply_faults;
    bus_read_t outcome{begin(guard, operation_t::read, wait_for_lock, reply_faults)};
    if (!outcome.ok())
        return outcome;
    begin_read(reply_faults);
    outcome.result = wait_for_reply(guard, deadline);
    if (outcome.ok())
        exchange.hand_out(target, capacity, term_char, outcome);
    return outcome;
}

void bus_session_t::begin_read(const std::vector<fault_t> &reply_faults)
{
    if (!exchange.reply && !exchange.reply_lost && reply_faults.empty())
        bus.state.instrument_at(where).note_query_error(scpi_error_t::query_unterminated);
    for (const fault_t &fault : reply_faults) {
        if (fault.kind == fault_kind_t::delay && exchange.reply) {
            exchange.reply->ready_at =
                std::max(exchange.reply->ready_at,
                         bus_clock_t::now() + std::chrono::milliseconds(fault.value));
        } else {
            apply_reply_fault(fault, exchange.reply);
        }
    }
}

bus_result_t bus_session_t::wait_for_reply(guard_t &guard, bus_time_t deadline)
{
    for (;;) {
        const bus_result_t state = connection_state();
        if (state != bus_result_t::ok || is_ready(exchange.reply))
            return state;
        if (bus_clock_t::now() >= deadline)
            return bus_result_t::timed_out;
        wait(guard, exchange.reply ? std::min(deadline, exchange.reply->ready_at) : deadline);
    }
}

std::optional<bus_time_t> bus_session_t::reply_due() const
{
    const guard_t guard(bus.mutex);
    return exchange.reply ? std::optional(exchange.reply->ready_at) : std::nullopt;
}

bus_outcome_t bus_session_t::clear(bus_time_t wait_for_lock)
{
    guard_t guard(bus.mutex);
    std::vector<fault_t> without_reply;
    const auto outcome = begin(guard, operation_t::clear, wait_for_lock, without_reply);
    if (outcome.ok())
        exchange.clear();
    return outcome;
}

bus_outcome_t bus_session_t::read_status_byte(std::uint8_t &byte, bus_time_t wait_for_lock)
{
    guard_t guard(bus.mutex);
    std::vector<fault_t> without_reply;
    const auto outcome = begin(guard, operation_t::read_status_byte, wait_for_lock, without_reply);
    if (outcome.ok())
        byte = bus.state.instrument_at(where).status_byte(is_ready(exchange.reply));
    return outcome;
}

bus_outcome_t bus_session_t::trigger(bus_time_t wait_for_lock)
{
    guard_t guard(bus.mutex);
    std::vector<fault_t> without_reply;
    return begin(guard, operation_t::trigger, wait_for_lock, without_reply);
}

bus_lock_t bus_session_t::lock_exclusive(bus_time_t deadline)
{
    return lock({}, deadline,
                [](::visa::resource_lock_t &lock, const bus_session_t &who, const auto &) {
                    return lock.take_exclusive(&who);
                });
}

bus_lock_t bus_session_t::lock_shared(const std::string &key, bus_time_t deadline)
{
    return lock(key, deadline,
                [](::visa::resource_lock_t &lock, const bus_session_t &who, const auto &its) {
                    return lock.take_shared(&who, its);
                });
}

bus_lock_t bus_session_t::after(ViStatus verdict, const ::visa::resource_lock_t &its_lock) const
{
    bus_lock_t outcome;
    outcome.held = its_lock.held_by(this);
    switch (verdict) {
    case ::visa::error_resource_locked:
        outcome.result = bus_result_t::locked;
        break;
    case ::visa::error_invalid_access_key:
        outcome.result = bus_result_t::wrong_key;
        break;
    case ::visa::error_session_not_locked:
        outcome.result = bus_result_t::not_locked;
        break;
    default:
        break;
    }
    return outcome;
}

bus_lock_t bus_session_t::lock(const std::string &key, bus_time_t deadline, attempt_t attempt)
{
    guard_t guard(bus.mutex);
    std::vector<fault_t> without_reply;
    bus_lock_t outcome{suffer(guard, operation_t::lock, without_reply)};
    while (outcome.ok()) {
        outcome.result = connection_state();
        if (!outcome.ok())
            break;
        ::visa::resource_lock_t &its_lock = bus.state.place(where).lock;
        if (const auto verdict = attempt(its_lock, *this, key)) {
            outcome = after(*verdict, its_lock);
            break;
        }
        if (bus_clock_t::now() < deadline)
            wait(guard, deadline);
        else
            outcome.result = deadline == at_once ? bus_result_t::locked : bus_result_t::timed_out;
    }
    return outcome;
}

bus_lock_t bus_session_t::unlock()
{
    guard_t guard(bus.mutex);
    std::vector<fault_t> without_reply;
    bus_lock_t outcome{suffer(guard, operation_t::unlock, without_reply)};
    if (!outcome.ok())
        return outcome;
    outcome.result = connection_state();
    if (!outcome.ok())
        return outcome;
    ::visa::resource_lock_t &its_lock = bus.state.place(where).lock;
    outcome = after(its_lock.give_back(this), its_lock);
    bus.state.wake(where);
    return outcome;
}

ViAccessMode bus_session_t::lock_state() const
{
    const guard_t guard(bus.mutex);
    return is_closed ? ::visa::access_no_lock : bus.state.place(where).lock.state();
}

bool bus_session_t::is_connected() const
{
    const guard_t guard(bus.mutex);
    return connection_state() == bus_result_t::ok;
}

void bus_session_t::close()
{
    const guard_t guard(bus.mutex);
    if (is_closed)
        return;
    is_closed = true;
    wake();
    auto &sessions = bus.state.sessions;
    sessions.erase(std::find(sessions.begin(), sessions.end(), this));
    bus.state.place(where).lock.end(this);
    bus.state.wake(where);
}

bus_outcome_t bus_session_t::begin(guard_t &guard, operation_t operation, bus_time_t wait_for_lock,
                                   std::vector<fault_t> &reply_faults)
{
    bus_outcome_t outcome = suffer(guard, operation, reply_faults);
    while (outcome.ok()) {
        outcome.result = connection_state();
        if (!outcome.ok() || bus.state.place(where).lock.allows(this))
            break;
        if (bus_clock_t::now() < wait_for_lock)
            wait(guard, wait_for_lock);
        else
            outcome.result = bus_result_t::locked;
    }
    return outcome;
}

bus_outcome_t bus_session_t::suffer(guard_t &guard, operation_t operation,
                                    std::vector<fault_t> &reply_faults)
{
    return bus.suffer(guard, operation, is_closed ? std::nullopt : std::optional(where),
                      reply_faults);
}

void bus_session_t::wait(guard_t &guard, bus_time_t until)
{
    changed.wait_until(guard, std::min(until, bus_clock_t::now() + longest_wait));
}

bus_result_t bus_session_t::connection_state() const
{
    // Once closed, the place may be another fleet's or none.
    if (is_closed)
        return bus_result_t::closed;
    const bool same = bus.state.place(where).connection == connection;
    return same ? bus_result_t::ok : bus_result_t::lost;
}

} // namespace sim
