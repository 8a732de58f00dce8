// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>

#include <cstdint>
#include <filesystem>

struct segment_record_t;

/// Transfers the package named by `upgrade_file_name` to the open USB instrument, segment by
/// segment, and at the end, good or bad, reboots the instrument and opens it again.
///
/// The package is not checked; do that before the start. A request for interruption fails the
/// upgrade after the block that is under way, or before an image is announced. The destructor
/// requests it and waits for the end.
class upgrade_thread_t : public QThread
{
    Q_OBJECT

public:
    explicit upgrade_thread_t(QObject *parent = nullptr);
    ~upgrade_thread_t() override;

    upgrade_thread_t(const upgrade_thread_t &) = delete;
    upgrade_thread_t &operator=(const upgrade_thread_t &) = delete;

signals:
    /// A segment begins; its length in bytes and the low byte of its type.
    void init_progress_bar(ulong length, uint type);
    /// So many bytes of the segment are sent; `ok` false means that the upgrade has failed.
    void send_upgrade_state(ulong sent, bool ok);
    /// All segments are sent and the reboot is over, whether or not an instrument was found again.
    void send_upgrade_success();

protected:
    void run() override;

private:
    bool send_chain(const std::filesystem::path &file, std::uint32_t end_offset);
    bool send_segment(const std::filesystem::path &file, const segment_record_t &record);
    bool send_payload(const std::filesystem::path &file, const segment_record_t &record,
                      std::uint32_t &progress);
    void wait_until_seen();
};
