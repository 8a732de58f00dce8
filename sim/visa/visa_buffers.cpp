// SPDX-License-Identifier: MIT
#include "sim/visa/visa_buffers.h"

#include "sim/visa/visa_call.h"
#include "visa/status_text.h"

#include <cstring>
#include <string_view>

namespace sim::visa {

namespace {

bool is_mask_of(ViUInt16 mask, ViUInt16 all)
{
    return mask != 0 && (mask & ~all) == 0;
}

} // namespace

ViStatus flush_buffers(ViSession session, ViUInt16 mask)
{
    visa_call_t call(session);
    if (!call)
        return call.refuse_object(operation_t::other);
    const ViStatus status = is_mask_of(mask, every_flush_mask) ? success : error_invalid_mask;
    return call.count(operation_t::other).value_or(status);
}

ViStatus set_buffer_size(ViSession session, ViUInt16 mask, ViUInt32 size)
{
    constexpr ViUInt16 formatted_buffers = read_buffer | write_buffer;
    visa_call_t call(session);
    if (!call)
        return call.refuse_object(operation_t::other);
    if (const auto verdict = call.count(operation_t::other))
        return *verdict;
    if (!is_mask_of(mask, formatted_buffers | io_in_buffer | io_out_buffer))
        return error_invalid_mask;
    if ((mask & formatted_buffers) == 0)
        return warning_buffer_not_supported;
    if (size == 0)
        return error_invalid_size;
    object_attributes_t &attributes = call.session->attributes;
    if ((mask & read_buffer) != 0)
        attributes.read_buffer_size = size;
    if ((mask & write_buffer) != 0)
        attributes.write_buffer_size = size;
    return success;
}

ViStatus describe_status(ViObject object, ViStatus status, char *text)
{
    visa_call_t call(object);
    if (const auto verdict = call.count(operation_t::other))
        return *verdict;
    if (text == nullptr)
        return error_user_buffer;
    const std::string_view known = status_text(status);
    const std::string_view said = known.empty() ? status_text(warning_unknown_status) : known;
    std::memcpy(text, said.data(), said.size());
    text[said.size()] = '\0';
    return known.empty() ? warning_unknown_status : success;
}

} // namespace sim::visa
