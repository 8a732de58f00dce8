// SPDX-License-Identifier: MIT
#include "sim/usb/descriptors.h"

namespace sim::usb {

namespace {

enum descriptor_type_t : std::uint8_t {
    device_type = 1,
    configuration_type = 2,
    string_type = 3,
    interface_type = 4,
    endpoint_type = 5,
};

constexpr std::uint8_t bulk_transfers = 2;
constexpr std::uint8_t interrupt_transfers = 3;

/// A descriptor with its length and type in front.
std::string sized(descriptor_type_t type, const std::string &content)
{
    return little_endian(content.size() + 2, 1) + little_endian(type, 1) + content;
}

std::string device_descriptor(const usb_identity_t &identity)
{
    const std::string usb_2_class_of_interface{"\x00\x02\x00\x00\x00\x40", 6};
    const std::string version_1_strings_1_to_3_one_configuration{"\x00\x01\x01\x02\x03\x01", 6};
    return sized(device_type, usb_2_class_of_interface + little_endian(identity.vendor, 2) +
                                  little_endian(identity.product, 2) +
                                  version_1_strings_1_to_3_one_configuration);
}

std::string endpoint_descriptor(std::uint8_t endpoint, std::uint8_t transfers, std::size_t packet,
                                std::uint8_t interval)
{
    return sized(endpoint_type, little_endian(endpoint, 1) + little_endian(transfers, 1) +
                                    little_endian(packet, 2) + little_endian(interval, 1));
}

std::string configuration_descriptor()
{
    const std::string three_endpoints_usbtmc_usb488{"\x00\x00\x03\xFE\x03\x01\x00", 7};
    const std::string one_interface_self_powered{"\x01\x01\x00\xC0\x00", 5};
    const std::string parts =
        sized(interface_type, three_endpoints_usbtmc_usb488) +
        endpoint_descriptor(bulk_out_endpoint, bulk_transfers, bulk_packet_bytes, 0) +
        endpoint_descriptor(bulk_in_endpoint, bulk_transfers, bulk_packet_bytes, 0) +
        endpoint_descriptor(interrupt_endpoint, interrupt_transfers, 2, 8);
    constexpr std::size_t own_bytes = 9;
    return sized(configuration_type,
                 little_endian(own_bytes + parts.size(), 2) + one_interface_self_powered) +
           parts;
}

usb_answer_t string_descriptor(const usb_identity_t &identity, unsigned index)
{
    const std::string english{"\x09\x04", 2};
    if (index == 0)
        return sized(string_type, english);
    const std::string *const texts[] = {&identity.manufacturer_name, &identity.product_name,
                                        &identity.serial_number};
    if (index > std::size(texts))
        return std::nullopt;
    std::string wide;
    for (const char character : *texts[index - 1])
        wide += {character, '\0'};
    return sized(string_type, wide);
}

} // namespace

usb_answer_t descriptor(const usb_identity_t &identity, const usb_setup_t &setup)
{
    switch (setup.value >> 8U) {
    case device_type:
        return device_descriptor(identity);
    case configuration_type:
        return configuration_descriptor();
    case string_type:
        return string_descriptor(identity, setup.value & 0xFFU);
    default:
        return std::nullopt;
    }
}

} // namespace sim::usb
