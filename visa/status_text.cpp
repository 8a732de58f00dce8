// SPDX-License-Identifier: MIT
#include "visa/status_text.h"

#include <algorithm>
#include <array>

namespace visa {

namespace {

struct row_t
{
    ViStatus status;
    std::string_view text;
};

constexpr std::array<row_t, 40> rows{{
    {success, "Operation completed successfully."},
    {success_event_enabled, "The event is already enabled for at least one of the mechanisms."},
    {success_event_disabled, "The event is already disabled for at least one of the mechanisms."},
    {success_queue_empty, "The event queue was empty already."},
    {success_term_char, "The termination character was read."},
    {success_max_count, "As many bytes as requested were read; there are more."},
    {success_nested_shared, "The session still has nested shared locks."},
    {success_nested_exclusive, "The session still has nested exclusive locks."},
    {warning_null_object, "The object is the null object and was not closed."},
    {warning_unknown_status, "The status is not known."},
    {warning_buffer_not_supported, "The buffer is not supported."},
    {error_system, "Unknown system error."},
    {error_invalid_object, "The session or object is invalid."},
    {error_resource_locked, "Another session has locked the resource."},
    {error_invalid_expression, "The search expression is malformed."},
    {error_resource_not_found, "The resource is not there."},
    {error_invalid_resource_name, "The resource name is malformed."},
    {error_invalid_access_mode, "The access mode is invalid."},
    {error_timeout, "The time-out expired before the operation was completed."},
    {error_attribute_not_supported, "The object has no such attribute."},
    {error_attribute_state_not_supported, "The attribute cannot have this state."},
    {error_attribute_read_only, "The attribute is read-only."},
    {error_invalid_lock_type, "The lock type is invalid."},
    {error_invalid_access_key, "The access key is invalid."},
    {error_invalid_event, "The resource has no such event."},
    {error_invalid_mechanism, "The event mechanism is invalid."},
    {error_handler_not_installed, "No handler is installed for the event."},
    {error_invalid_handler_reference, "The handler is not installed."},
    {error_invalid_context, "The event context is invalid."},
    {error_not_enabled, "The event is not enabled for the queue."},
    {error_allocation, "There is not enough memory."},
    {error_invalid_mask, "The buffer mask is invalid."},
    {error_io, "The transfer failed."},
    {error_operation_not_supported, "The object has no such operation."},
    {error_user_buffer, "A buffer or pointer is invalid."},
    {error_invalid_protocol, "The protocol is not supported."},
    {error_invalid_size, "The buffer size is invalid."},
    {error_session_not_locked, "The session has no lock."},
    {error_connection_lost, "The connection to the instrument is lost."},
    {error_no_permission, "The user may not use the instrument."},
}};

} // namespace

std::string_view status_text(ViStatus status)
{
    const auto *const row =
        std::find_if(rows.begin(), rows.end(),
                     [status](const row_t &candidate) { return candidate.status == status; });
    return row == rows.end() ? std::string_view() : row->text;
}

} // namespace visa
