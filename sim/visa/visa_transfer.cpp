// SPDX-License-Identifier: MIT
#include "sim/visa/visa_transfer.h"

#include "sim/visa/visa_call.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace sim::visa {

namespace {

// A wait without a time-out is cut into pieces that every clock can add.
constexpr std::chrono::hours longest_wait{1};

void drop_unread_reply(visa_call_t &call)
{
    visa_session_t &session = *call.session;
    if (session.reply) {
        call.world.bus.instrument_at(session.resource)
            .note_query_error(scpi_error_t::query_interrupted);
    }
    session.reply.reset();
    session.reply_lost = false;
}

void deliver(visa_call_t &call, std::string_view message)
{
    visa_session_t &session = *call.session;
    if (auto scripted = call.world.scripts.take(session.resource, message)) {
        session.reply =
            pending_reply_t{std::move(*scripted), call.world.bus.reply_time(session.resource)};
    } else {
        session.reply = call.world.bus.deliver(session.resource, message);
    }
    const bool answered = session.reply.has_value();
    for (const fault_t &fault : call.reply_faults)
        apply_reply_fault(fault, session.reply);
    session.reply_lost = answered && !session.reply;
    call.world.changed.notify_all();
}

void begin_read(visa_call_t &call)
{
    visa_session_t &session = *call.session;
    if (!session.reply && !session.reply_lost && call.reply_faults.empty()) {
        call.world.bus.instrument_at(session.resource)
            .note_query_error(scpi_error_t::query_unterminated);
    }
    for (const fault_t &fault : call.reply_faults) {
        if (fault.kind == CORVANE_SIM_FAULT_DELAY && session.reply) {
            session.reply->ready_at =
                std::max(session.reply->ready_at,
                         bus_clock_t::now() + std::chrono::milliseconds(fault.value));
        } else {
            apply_reply_fault(fault, session.reply);
        }
    }
}

bus_clock_t::time_point deadline_of(const visa_session_t &session)
{
    const auto now = bus_clock_t::now();
    return session.timeout_ms == timeout_infinite
               ? bus_clock_t::time_point::max()
               : now + std::chrono::milliseconds(session.timeout_ms);
}

// Success when a reply is there to be read.
ViStatus wait_for_reply(visa_call_t &call)
{
    const visa_session_t &session = *call.session;
    const auto deadline = deadline_of(session);
    for (;;) {
        if (session.closed)
            return error_invalid_object;
        if (!call.world.bus.is_connected(session))
            return error_connection_lost;
        const auto now = bus_clock_t::now();
        if (session.reply && session.reply->ready_at <= now)
            return success;
        if (now >= deadline)
            return error_timeout;
        auto wake = std::min(deadline, now + longest_wait);
        if (session.reply)
            wake = std::min(wake, session.reply->ready_at);
        call.world.changed.wait_until(call.lock, wake);
    }
}

ViStatus hand_out(visa_session_t &session, ViUInt8 *bytes, ViUInt32 count, ViUInt32 &bytes_read)
{
    pending_reply_t &reply = *session.reply;
    reply.bytes_read = std::min(reply.bytes_read, reply.bytes.size());
    std::string_view rest = std::string_view(reply.bytes).substr(reply.bytes_read);
    rest = rest.substr(0, count);
    const auto term = session.term_char_enabled ? rest.find(static_cast<char>(session.term_char))
                                                : std::string_view::npos;
    if (term != std::string_view::npos)
        rest = rest.substr(0, term + 1);
    if (!rest.empty())
        std::memcpy(bytes, rest.data(), rest.size());
    bytes_read = static_cast<ViUInt32>(rest.size());
    reply.bytes_read += rest.size();
    if (reply.bytes_read == reply.bytes.size()) {
        session.reply.reset();
        return success;
    }
    return term != std::string_view::npos ? success_term_char : success_max_count;
}

} // namespace

ViStatus write_bytes(ViSession handle, const ViUInt8 *bytes, ViUInt32 count, ViUInt32 *written)
{
    if (written != nullptr)
        *written = 0;
    visa_call_t call(CORVANE_SIM_WRITE, handle);
    if (const auto verdict = call.transfer_verdict())
        return *verdict;
    if (count > 0 && bytes == nullptr)
        return error_user_buffer;
    if (count == 0)
        return success;

    visa_session_t &session = *call.session;
    drop_unread_reply(call);
    const std::string_view text(reinterpret_cast<const char *>(bytes), count);
    call.world.log.note(session.name_text, text);
    if (written != nullptr)
        *written = count;
    session.unfinished_message.append(text);
    if (session.send_end_enabled || text.back() == '\n')
        deliver(call, std::exchange(session.unfinished_message, {}));
    return success;
}

ViStatus read_bytes(ViSession handle, ViUInt8 *bytes, ViUInt32 count, ViUInt32 *bytes_read)
{
    ViUInt32 handed_out = 0;
    if (bytes_read != nullptr)
        *bytes_read = 0;
    visa_call_t call(CORVANE_SIM_READ, handle);
    if (const auto verdict = call.transfer_verdict())
        return *verdict;
    if (count > 0 && bytes == nullptr)
        return error_user_buffer;
    begin_read(call);
    const ViStatus waited = wait_for_reply(call);
    if (waited != success)
        return waited;
    const ViStatus status = hand_out(*call.session, bytes, count, handed_out);
    if (bytes_read != nullptr)
        *bytes_read = handed_out;
    return status;
}

ViStatus clear_session(ViSession handle)
{
    const visa_call_t call(CORVANE_SIM_CLEAR, handle);
    if (const auto verdict = call.transfer_verdict())
        return *verdict;
    call.session->unfinished_message.clear();
    call.session->reply.reset();
    call.session->reply_lost = false;
    return success;
}

} // namespace sim::visa
