// SPDX-License-Identifier: MIT
#pragma once

#include "sim/instrument/scpi_error.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

enum class image_kind_t : std::uint8_t { boot, host };

/// One firmware image as it arrived, without the padding of its last block.
struct firmware_image_t
{
    image_kind_t kind;
    std::size_t announced_bytes;
    std::string bytes;
};

/// One device parameter: its name in capitals ("PIDUG", "PRODUCTUG:ID") and its raw bytes.
struct device_parameter_t
{
    std::string name;
    std::string bytes;
};

/// How an instrument is to misbehave during an upgrade. Blocks count from 1, from the moment
/// the misbehaviour is set; 0 stands for "at once" (busy) and "never" (the other two).
struct upgrade_misbehaviour_t
{
    std::size_t busy_polls = 0;       ///< so many readiness polls are answered with "0"
    std::size_t busy_after_block = 0; ///< the busy polls begin after this block
    std::size_t unready_at_block = 0; ///< this block is refused; not ready until a restart
    std::size_t unplug_at_block = 0;  ///< the instrument leaves the bus at this block
};

/// Receives firmware images and device parameters and keeps them for inspection.
class firmware_store_t
{
public:
    static constexpr std::size_t block_bytes = 2048;
    static constexpr std::size_t most_image_bytes = std::size_t{64} * 1024 * 1024;

    /// Begins an image. -222 for no bytes or too many.
    scpi_error_t announce(image_kind_t kind, std::size_t image_bytes);

    /// Takes one block. Refused with -161 unless it has 2048 bytes, with -200 when no image
    /// is announced, with -223 when the image is complete already. A refused block leaves
    /// the store not ready until the next announcement.
    scpi_error_t accept_block(std::string_view block);

    /// Tells whether the next block may come, as one readiness poll.
    bool poll_ready();

    /// Makes the store not ready, as after a refused announcement.
    void fail() { failed = true; }

    void keep_parameter(std::string name, std::string_view bytes);
    void misbehave(const upgrade_misbehaviour_t &plan);

    /// Forgets the transfer under way; what was received stays.
    void restart();

    bool ready() const { return !failed && !unready_for_good; }
    bool unplug_due() const { return unplug_reached; }
    const std::vector<firmware_image_t> &images() const { return received; }
    const std::vector<device_parameter_t> &parameters() const { return kept; }

private:
    void begin_busy();

    std::vector<firmware_image_t> received;
    std::vector<device_parameter_t> kept;
    upgrade_misbehaviour_t misbehaviour;
    std::size_t blocks_seen = 0; ///< since the misbehaviour was set
    std::size_t busy_polls_left = 0;
    bool announced = false;
    bool failed = false;
    bool unready_for_good = false;
    bool unplug_reached = false;
};

} // namespace sim
