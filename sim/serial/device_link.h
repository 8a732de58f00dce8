// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace sim::serial {

/// A symbolic link to a device, as long as this object lives.
class device_link_t
{
public:
    /// Replaces a link that is there already; no link at all for an empty place. Throws
    /// std::filesystem::filesystem_error, also when something else is in that place.
    device_link_t(std::filesystem::path link_place, const std::filesystem::path &device);
    ~device_link_t();
    device_link_t(const device_link_t &) = delete;
    device_link_t &operator=(const device_link_t &) = delete;

private:
    std::filesystem::path place;
};

} // namespace sim::serial
