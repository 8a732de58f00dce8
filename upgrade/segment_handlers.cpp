// SPDX-License-Identifier: MIT
#include "upgrade/segment_handlers.h"

#include "drv/drv_device.h"
#include "drv/pause.h"
#include "upgrade/package_format.h"
#include "upgrade/package_reader.h"
#include "upgrade/upgrade_protocol.h"

#include <QThread>

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view block_command = "UPGRADE ";
/// Fills the last block of an image.
constexpr char padding = '\xFF';

std::map<std::uint8_t, segment_handler_t> segment_handlers;

bool announce_image(const segment_kind_t &kind, std::uint32_t image_bytes)
{
    if (kind.transfer == segment_transfer_t::loader_image && !reboot_to_loader())
        return false;
    // While it reboots the upgrade may have been stopped, and an announced image must follow.
    if (QThread::currentThread()->isInterruptionRequested())
        return false;
    const std::string text = std::string(kind.command) + std::to_string(image_bytes);
    drv_device_t::instance()->link_write(text.data(), text.size());
    pause_ms(segment_pauses::announce_ms);
    return wait_ready();
}

bool send_image_block(const segment_kind_t &kind, const std::filesystem::path &file,
                      std::uint32_t &progress, std::uint32_t data_offset, std::uint32_t data_length)
{
    if (progress == 0 && !announce_image(kind, data_length))
        return false;
    std::array<char, block_command.size() + image_block_bytes> message{};
    char *const block = std::copy(block_command.begin(), block_command.end(), message.begin());
    std::fill(block, message.end(), padding);
    const auto count = std::min<std::uint32_t>(data_length - progress, image_block_bytes);
    if (!read_payload(file, std::uint64_t{data_offset} + progress, block, count))
        return false;
    progress += count;
    drv_device_t::instance()->link_write(message.data(), message.size());
    pause_ms(segment_pauses::block_ms);
    return wait_ready();
}

bool send_parameter(const segment_kind_t &kind, const std::filesystem::path &file,
                    std::uint32_t &progress, std::uint32_t data_offset, std::uint32_t data_length)
{
    std::array<char, parameter_command_bytes> command{};
    char *const payload = std::copy(kind.command.begin(), kind.command.end(), command.begin());
    if (!payload_fits(kind, data_length) || !read_payload(file, data_offset, payload, data_length))
        return false;
    progress = data_length;
    drv_device_t::instance()->link_write(command.data(), kind.command.size() + data_length);
    pause_ms(segment_pauses::parameter_ms);
    return true;
}

} // namespace

void fill_segment_handlers()
{
    for (const segment_kind_t &kind : segment_kinds) {
        const auto send =
            kind.transfer == segment_transfer_t::parameter ? send_parameter : send_image_block;
        segment_handlers[kind.type] = [&kind, send](const std::filesystem::path &file,
                                                    std::uint32_t &progress, std::uint32_t /*type*/,
                                                    std::uint32_t offset, std::uint32_t length) {
            return send(kind, file, progress, offset, length);
        };
    }
}

bool dispatch_segment(const std::filesystem::path &file, std::uint32_t &progress,
                      std::uint32_t type, std::uint32_t data_offset, std::uint32_t data_length)
{
    const auto handler = segment_handlers.find(static_cast<std::uint8_t>(type));
    return handler != segment_handlers.end() &&
           handler->second(file, progress, type, data_offset, data_length);
}
