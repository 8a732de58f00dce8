// SPDX-License-Identifier: MIT
#include "sim/lan/vxi11_service.h"

#include "sim/lan/vxi11_procedures.h"

#include <algorithm>
#include <chrono>

namespace sim::lan {

using namespace rpc::vxi11;

namespace {

/// What a read hands out at once; the client goes on reading.
constexpr std::size_t most_read_bytes = 16'384;

constexpr std::string_view served_device = "inst0";

template <typename result_t>
result_t with_error(error_code_t error, result_t result = {})
{
    result.error = static_cast<std::uint32_t>(error);
    return result;
}

bus_time_t later(bus_time_t time, std::uint32_t ms)
{
    return time + std::chrono::milliseconds(ms);
}

bool is_locked(bus_result_t result)
{
    return result == bus_result_t::locked || result == bus_result_t::timed_out;
}

} // namespace

vxi11_service_t::vxi11_service_t(bus_t &instrument_bus, place_t instrument, std::uint16_t core_port,
                                 link_table_t &link_table)
    : bus(instrument_bus), place(instrument), port(core_port), table(link_table)
{
}

vxi11_service_t::~vxi11_service_t()
{
    while (!links.empty())
        drop(links.begin()->first);
}

const std::vector<rpc_program_t> &vxi11_service_t::programs() const
{
    static const std::vector<rpc_program_t> served{{core_program, served_version, served_version},
                                                   {abort_program, served_version, served_version}};
    return served;
}

execution_t vxi11_service_t::execute(const rpc::call_t &call, bool again,
                                     rpc::xdr_writer_t &results)
{
    if (!again) {
        attempt = {};
        attempt.began = bus_clock_t::now();
    }
    attempt.waits_until.reset();
    const rpc::accept_status_t status = run_procedure(*this, call, results);
    return {status, attempt.waits_until};
}

bool vxi11_service_t::is_alive() const
{
    return std::all_of(links.begin(), links.end(),
                       [](const auto &entry) { return entry.second.session->is_connected(); });
}

bool vxi11_service_t::is_served(std::string_view device_name)
{
    const auto same_letter = [](char one, char other) {
        return one == other || (one >= 'A' && one <= 'Z' && one - 'A' + 'a' == other);
    };
    return std::equal(device_name.begin(), device_name.end(), served_device.begin(),
                      served_device.end(), same_letter);
}

void vxi11_service_t::abort(std::uint32_t link)
{
    attempt.aborted = attempt.link == link;
}

vxi11_service_t::client_link_t *vxi11_service_t::find(std::uint32_t link)
{
    const auto found = links.find(link);
    return found == links.end() ? nullptr : &found->second;
}

void vxi11_service_t::drop(std::uint32_t link)
{
    const auto found = links.find(link);
    const bool had_lock = found->second.has_lock;
    links.erase(found);
    table.remove(link);
    if (had_lock)
        table.note_change();
}

/// Performs an operation on a link. When another link has the lock, waits for it as the client
/// wishes.
error_code_t vxi11_service_t::operate(std::uint32_t link, std::uint32_t flags,
                                      std::uint32_t lock_timeout, const operation_t &operation)
{
    client_link_t *const found = find(link);
    if (found == nullptr)
        return error_code_t::invalid_link;
    attempt.link = link;
    const bus_outcome_t outcome = operation(*found);
    if (outcome.ok())
        return error_code_t::none;
    if (!is_locked(outcome.result))
        return error_code_t::io;
    const bool is_patient = (flags & flag_wait_lock) != 0;
    return wait(never, is_patient ? later(attempt.began, lock_timeout) : at_once,
                error_code_t::locked_by_another_link);
}

/// Lets the call wait until the earlier of two times. After the deadline it fails.
error_code_t vxi11_service_t::wait(bus_time_t wake_time, bus_time_t deadline, error_code_t too_late)
{
    if (attempt.aborted)
        return error_code_t::abort;
    if (deadline <= bus_clock_t::now())
        return too_late;
    attempt.waits_until = std::min(wake_time, deadline);
    return error_code_t::none;
}

create_link_result_t vxi11_service_t::create_link(const create_link_args_t &args)
{
    client_link_t link;
    if (is_served(args.device) && bus.note_call(sim::operation_t::open, place).ok())
        link.session = bus.open(place);
    if (!link.session)
        return with_error<create_link_result_t>(error_code_t::device_not_accessible);
    if (args.lock_device) {
        if (!link.session->lock_exclusive(at_once).ok())
            return with_error<create_link_result_t>(wait(never,
                                                         later(attempt.began, args.lock_timeout),
                                                         error_code_t::locked_by_another_link));
        link.has_lock = true;
    }
    const std::uint32_t number = links.size() < most_links ? table.add(*this) : 0;
    if (number == 0)
        return with_error<create_link_result_t>(error_code_t::out_of_resources);
    links.emplace(number, std::move(link));
    return {0, number, port, most_write_bytes};
}

error_number_result_t vxi11_service_t::write(const write_args_t &args)
{
    const bool end = (args.flags & flag_end) != 0;
    const auto put = [this, &args, end](client_link_t &link) {
        const bool completes = end || (!args.data.empty() && args.data.back() == '\n');
        if (link.unfinished_bytes + args.data.size() > most_message_bytes) {
            link.unfinished_bytes = 0;
            link.session->clear();
            return bus_outcome_t{bus_result_t::fault};
        }
        const bus_outcome_t outcome = link.session->write(args.data, end);
        if (outcome.ok())
            link.unfinished_bytes = completes ? 0 : link.unfinished_bytes + args.data.size();
        if (!link.session->is_connected())
            table.note_change();
        return outcome;
    };
    const error_code_t error = operate(args.link, args.flags, args.lock_timeout, put);
    return with_error<error_number_result_t>(
        error, {0, error == error_code_t::none ? static_cast<std::uint32_t>(args.data.size()) : 0});
}

read_result_t vxi11_service_t::read(const read_args_t &args)
{
    read_result_t result;
    const auto check_lock = [](client_link_t &link) {
        const bool barred = !link.has_lock && link.session->lock_state() != ::visa::access_no_lock;
        return bus_outcome_t{barred ? bus_result_t::locked : bus_result_t::ok};
    };
    error_code_t error = operate(args.link, args.flags, args.lock_timeout, check_lock);
    if (error != error_code_t::none || attempt.waits_until)
        return with_error(error, result);
    bus_session_t &session = *find(args.link)->session;
    error = await_reply(session, args.io_timeout);
    if (error == error_code_t::none && !attempt.waits_until)
        error = hand_out(session, args, result);
    return with_error(error, result);
}

/// Without an error and a time to wait until, a reply can be read.
error_code_t vxi11_service_t::await_reply(bus_session_t &session, std::uint32_t io_timeout)
{
    const bus_time_t now = bus_clock_t::now();
    const std::optional<bus_time_t> due = session.reply_due();
    const bool is_first = !attempt.io_deadline;
    if (is_first)
        attempt.io_deadline = later(now, io_timeout);
    if (due && *due <= now)
        return error_code_t::none;
    // The instrument notes the error, once, that nothing was asked.
    if (!due && is_first)
        session.read(nullptr, 0, at_once);
    return wait(due.value_or(never), *attempt.io_deadline, error_code_t::io_timeout);
}

error_code_t vxi11_service_t::hand_out(bus_session_t &session, const read_args_t &args,
                                       read_result_t &result)
{
    const std::size_t capacity = std::min<std::size_t>(args.request_size, most_read_bytes);
    if (read_buffer.size() < capacity)
        read_buffer.resize(capacity);
    std::optional<char> term_char;
    if ((args.flags & flag_term_char) != 0)
        term_char = static_cast<char>(args.term_char);
    const bus_read_t outcome = session.read(read_buffer.data(), capacity, at_once, term_char);
    if (!outcome.ok())
        return error_code_t::io;
    result.data = std::string_view(read_buffer).substr(0, outcome.count);
    result.reason = (outcome.count == args.request_size ? reason_count : 0) |
                    (outcome.term_char_seen ? reason_term_char : 0) |
                    (outcome.end ? reason_end : 0);
    return error_code_t::none;
}

error_number_result_t vxi11_service_t::read_status(const generic_args_t &args)
{
    std::uint8_t byte = 0;
    const error_code_t error =
        operate(args.link, args.flags, args.lock_timeout,
                [&byte](client_link_t &link) { return link.session->read_status_byte(byte); });
    return with_error<error_number_result_t>(error, {0, byte});
}

error_result_t vxi11_service_t::trigger(const generic_args_t &args)
{
    return with_error<error_result_t>(
        operate(args.link, args.flags, args.lock_timeout,
                [](client_link_t &link) { return link.session->trigger(); }));
}

error_result_t vxi11_service_t::clear(const generic_args_t &args)
{
    return with_error<error_result_t>(
        operate(args.link, args.flags, args.lock_timeout, [](client_link_t &link) {
            link.unfinished_bytes = 0;
            return link.session->clear();
        }));
}

error_result_t vxi11_service_t::lock(const lock_args_t &args)
{
    // Locks do not nest: who has it already is refused, too, and has not to wait.
    const client_link_t *const link = find(args.link);
    const bool is_owner = link != nullptr && link->has_lock;
    if (is_owner)
        return with_error<error_result_t>(error_code_t::locked_by_another_link);
    return with_error<error_result_t>(
        operate(args.link, args.flags, args.lock_timeout, [](client_link_t &asking) {
            bus_outcome_t outcome = asking.session->lock_exclusive(at_once);
            asking.has_lock = outcome.ok();
            return outcome;
        }));
}

error_result_t vxi11_service_t::unlock(const link_args_t &args)
{
    client_link_t *const link = find(args.link);
    if (link == nullptr)
        return with_error<error_result_t>(error_code_t::invalid_link);
    if (!link->has_lock)
        return with_error<error_result_t>(error_code_t::no_lock_held);
    link->session->unlock();
    link->has_lock = false;
    table.note_change();
    return {};
}

error_result_t vxi11_service_t::destroy_link(const link_args_t &args)
{
    if (find(args.link) == nullptr)
        return with_error<error_result_t>(error_code_t::invalid_link);
    drop(args.link);
    return {};
}

error_result_t vxi11_service_t::abort_link(const link_args_t &args)
{
    return with_error<error_result_t>(table.abort(args.link) ? error_code_t::none
                                                             : error_code_t::invalid_link);
}

} // namespace sim::lan
