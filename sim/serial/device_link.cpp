// SPDX-License-Identifier: MIT
#include "sim/serial/device_link.h"

#include <system_error>
#include <utility>

namespace sim::serial {

namespace fs = std::filesystem;

device_link_t::device_link_t(fs::path link_place, const fs::path &device)
    : place(std::move(link_place))
{
    if (place.empty())
        return;
    if (fs::is_symlink(fs::symlink_status(place)))
        fs::remove(place);
    fs::create_symlink(device, place);
}

device_link_t::~device_link_t()
{
    std::error_code ignored;
    if (!place.empty())
        fs::remove(place, ignored);
}

} // namespace sim::serial
