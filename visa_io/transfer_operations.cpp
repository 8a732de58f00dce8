// SPDX-License-Identifier: MIT
#include "visa/operations.h"
#include "visa_io/session_call.h"

#include <string_view>

namespace visa::operations {

using namespace visa_io;

namespace {

/// A call on an instrument beside its messages.
template <typename operation_t>
ViStatus command(ViSession session, operation_t operation)
{
    link_call_t call(session);
    if (call.verdict() != success)
        return call.verdict();
    return call.answer(operation(call.link(), call.deadline()));
}

void store_count(ViUInt32 *target, std::size_t count)
{
    if (target != nullptr)
        *target = static_cast<ViUInt32>(count);
}

} // namespace

ViStatus write_bytes(ViSession session, const ViUInt8 *bytes, ViUInt32 count, ViUInt32 *written)
{
    store_count(written, 0);
    if (count > 0 && bytes == nullptr)
        return error_user_buffer;
    link_call_t call(session);
    if (call.verdict() != success)
        return call.verdict();
    const std::string_view data(reinterpret_cast<const char *>(bytes), count);
    const transfer_t done =
        call.link().write(data, call.attributes().send_end_enabled, call.deadline());
    store_count(written, done.count);
    return call.answer(done.status);
}

ViStatus read_bytes(ViSession session, ViUInt8 *bytes, ViUInt32 count, ViUInt32 *bytes_read)
{
    store_count(bytes_read, 0);
    if (count > 0 && bytes == nullptr)
        return error_user_buffer;
    link_call_t call(session);
    if (call.verdict() != success)
        return call.verdict();
    const object_attributes_t &attributes = call.attributes();
    const int term_char = attributes.term_char_enabled ? attributes.term_char : -1;
    const transfer_t done =
        call.link().read(reinterpret_cast<char *>(bytes), count, term_char, call.deadline());
    store_count(bytes_read, done.count);
    if (done.status != success || done.end)
        return call.answer(done.status);
    const bool at_term_char = done.count > 0 && bytes[done.count - 1] == term_char;
    return call.answer(at_term_char ? success_term_char : success_max_count);
}

ViStatus clear_session(ViSession session)
{
    return command(session,
                   [](device_link_t &link, deadline_t latest) { return link.clear(latest); });
}

ViStatus read_status_byte(ViSession session, ViUInt16 *byte)
{
    if (byte == nullptr)
        return error_user_buffer;
    return command(session, [byte](device_link_t &link, deadline_t latest) {
        ViUInt8 status = 0;
        const ViStatus outcome = link.read_status_byte(status, latest);
        *byte = status;
        return outcome;
    });
}

ViStatus assert_trigger(ViSession session, ViUInt16 protocol)
{
    if (protocol != trigger_protocol_default)
        return error_invalid_protocol;
    return command(session,
                   [](device_link_t &link, deadline_t latest) { return link.trigger(latest); });
}

} // namespace visa::operations
