// SPDX-License-Identifier: MIT
#include "visa/find_list.h"

#include <cstring>

namespace visa {

void store_text(char *target, const std::string &text)
{
    if (target == nullptr)
        return;
    const std::string fitting = text.substr(0, find_buffer_bytes - 1);
    std::memcpy(target, fitting.c_str(), fitting.size() + 1);
}

ViStatus find_list_t::hand_out(char *name)
{
    if (name == nullptr)
        return error_user_buffer;
    if (next >= names.size())
        return error_resource_not_found;
    store_text(name, names[next++]);
    return success;
}

} // namespace visa
