// SPDX-License-Identifier: MIT
#include "sim/visa/visa_call.h"
#include "visa/common_answers.h"
#include "visa/operations.h"

namespace visa::operations {

using namespace sim;
using namespace sim::visa;

ViStatus flush_buffers(ViSession session, ViUInt16 mask)
{
    visa_call_t call(session);
    if (!call)
        return call.refuse_object(operation_t::other);
    return call.count(operation_t::other).value_or(flush_verdict(mask));
}

ViStatus set_buffer_size(ViSession session, ViUInt16 mask, ViUInt32 size)
{
    visa_call_t call(session);
    if (!call)
        return call.refuse_object(operation_t::other);
    if (const auto verdict = call.count(operation_t::other))
        return *verdict;
    return ::visa::set_buffer_size(call.session->attributes, mask, size);
}

ViStatus describe_status(ViObject object, ViStatus status, char *text)
{
    visa_call_t call(object);
    if (const auto verdict = call.count(operation_t::other))
        return *verdict;
    return ::visa::describe_status(status, text);
}

} // namespace visa::operations
