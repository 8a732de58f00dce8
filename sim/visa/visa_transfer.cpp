// SPDX-License-Identifier: MIT
#include "sim/visa/visa_call.h"
#include "visa/operations.h"

#include <optional>
#include <string_view>

namespace visa::operations {

using namespace sim;
using namespace sim::visa;

ViStatus write_bytes(ViSession handle, const ViUInt8 *bytes, ViUInt32 count, ViUInt32 *written)
{
    if (written != nullptr)
        *written = 0;
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::write);
    if (count > 0 && bytes == nullptr)
        return call.refuse(operation_t::write, error_user_buffer);
    const bool end = call.session->attributes.send_end_enabled && count > 0;
    call.release();

    const std::string_view text(reinterpret_cast<const char *>(bytes), count);
    const bus_outcome_t outcome = call.session->port->write(text, end);
    if (outcome.ok() && written != nullptr)
        *written = count;
    return status_of(outcome);
}

ViStatus read_bytes(ViSession handle, ViUInt8 *bytes, ViUInt32 count, ViUInt32 *bytes_read)
{
    if (bytes_read != nullptr)
        *bytes_read = 0;
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::read);
    if (count > 0 && bytes == nullptr)
        return call.refuse(operation_t::read, error_user_buffer);
    const object_attributes_t &attributes = call.session->attributes;
    const auto term_char = attributes.term_char_enabled
                               ? std::optional(static_cast<char>(attributes.term_char))
                               : std::nullopt;
    const bus_time_t deadline = deadline_after(attributes.timeout_ms);
    call.release();

    const bus_read_t outcome =
        call.session->port->read(reinterpret_cast<char *>(bytes), count, deadline, term_char);
    if (bytes_read != nullptr)
        *bytes_read = static_cast<ViUInt32>(outcome.count);
    if (!outcome.ok() || outcome.end)
        return status_of(outcome);
    return outcome.term_char_seen ? success_term_char : success_max_count;
}

ViStatus clear_session(ViSession handle)
{
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::clear);
    call.release();
    return status_of(call.session->port->clear());
}

ViStatus read_status_byte(ViSession handle, ViUInt16 *byte)
{
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::read_status_byte);
    if (byte == nullptr)
        return call.refuse(operation_t::read_status_byte, error_user_buffer);
    call.release();
    std::uint8_t status = 0;
    const bus_outcome_t outcome = call.session->port->read_status_byte(status);
    *byte = status;
    return status_of(outcome);
}

ViStatus assert_trigger(ViSession handle, ViUInt16 protocol)
{
    visa_call_t call(handle);
    if (!call)
        return call.refuse_object(operation_t::trigger);
    if (protocol != trigger_protocol_default)
        return call.refuse(operation_t::trigger, error_invalid_protocol);
    call.release();
    return status_of(call.session->port->trigger());
}

} // namespace visa::operations
