// SPDX-License-Identifier: MIT
#include "visa/common_answers.h"

#include "visa/find_list.h"
#include "visa/resource_name.h"
#include "visa/status_text.h"

#include <string>
#include <string_view>

namespace visa {

namespace {

bool is_mask_of(ViUInt16 mask, ViUInt16 all)
{
    return mask != 0 && (mask & ~all) == 0;
}

} // namespace

ViStatus describe_resource(const char *name, ViUInt16 *interface_type, ViUInt16 *interface_number,
                           char *resource_class, char *full_name, char *alias)
{
    const auto read = read_resource_name(name == nullptr ? "" : name);
    if (!read)
        return error_invalid_resource_name;
    if (interface_type == nullptr || interface_number == nullptr)
        return error_user_buffer;
    *interface_type = read->interface_type;
    *interface_number = read->board;
    store_text(resource_class, read->resource_class);
    store_text(full_name, read->canonical);
    store_text(alias, "");
    return success;
}

ViStatus flush_verdict(ViUInt16 mask)
{
    return is_mask_of(mask, every_flush_mask) ? success : error_invalid_mask;
}

ViStatus set_buffer_size(object_attributes_t &attributes, ViUInt16 mask, ViUInt32 size)
{
    constexpr ViUInt16 formatted_buffers = read_buffer | write_buffer;
    if (!is_mask_of(mask, formatted_buffers | io_in_buffer | io_out_buffer))
        return error_invalid_mask;
    if ((mask & formatted_buffers) == 0)
        return warning_buffer_not_supported;
    if (size == 0)
        return error_invalid_size;
    if ((mask & read_buffer) != 0)
        attributes.read_buffer_size = size;
    if ((mask & write_buffer) != 0)
        attributes.write_buffer_size = size;
    return success;
}

ViStatus describe_status(ViStatus status, char *text)
{
    if (text == nullptr)
        return error_user_buffer;
    const std::string_view known = status_text(status);
    store_text(text, std::string(known.empty() ? status_text(warning_unknown_status) : known));
    return known.empty() ? warning_unknown_status : success;
}

} // namespace visa
