// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

/// By what a TMX is known on USB.
namespace usb_identity {
constexpr std::uint16_t vendor = 0xA17E;
constexpr std::uint16_t product = 0x2000;
/// The same as it stands in a VISA resource name.
constexpr std::string_view resource_part = "0xA17E::0x2000";
} // namespace usb_identity
