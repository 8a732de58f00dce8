// SPDX-License-Identifier: MIT
#include "upgrade/upgrade_thread.h"

#include "upgrade/package_reader.h"
#include "upgrade/segment_chain.h"
#include "upgrade/segment_handlers.h"
#include "upgrade/upgrade_file.h"
#include "upgrade/upgrade_protocol.h"

#include <QSemaphore>

#include <memory>

namespace {

/// So many segments may be told before those who listen have taken notice of them.
constexpr int most_unseen_segments = 256;
/// For how long they are waited for: a thread that only waits for the end takes notice of nothing.
constexpr int notice_patience_ms = 100;

} // namespace

upgrade_thread_t::upgrade_thread_t(QObject *parent) : QThread(parent)
{
    fill_segment_handlers();
}

upgrade_thread_t::~upgrade_thread_t()
{
    requestInterruption();
    wait();
}

void upgrade_thread_t::run()
{
    const std::filesystem::path file = to_file_path(upgrade_file_name());
    upgrade_header_t header{};
    read_upgrade_header(file, header);
    const bool complete = send_chain(file, header_end_offset(header));
    reboot();
    if (complete)
        emit send_upgrade_success();
}

bool upgrade_thread_t::send_chain(const std::filesystem::path &file, std::uint32_t end_offset)
{
    segment_chain_t chain(file, end_offset);
    chain_step_t step = chain.next();
    for (int told = 1; step == chain_step_t::segment; step = chain.next(), ++told) {
        if (!send_segment(file, chain.record()))
            return false;
        if (told % most_unseen_segments == 0)
            wait_until_seen();
    }
    if (step == chain_step_t::complete)
        return true;
    emit send_upgrade_state(0, false);
    return false;
}

bool upgrade_thread_t::send_segment(const std::filesystem::path &file,
                                    const segment_record_t &record)
{
    emit init_progress_bar(record.data_length, record.kind());
    std::uint32_t progress = 0;
    const bool complete = send_payload(file, record, progress);
    emit send_upgrade_state(progress, complete);
    return complete;
}

bool upgrade_thread_t::send_payload(const std::filesystem::path &file,
                                    const segment_record_t &record, std::uint32_t &progress)
{
    if (isInterruptionRequested() || !file_holds(file, record.data_offset, record.data_length))
        return false;
    while (progress < record.data_length) {
        if (isInterruptionRequested() ||
            !dispatch_segment(file, progress, record.type, record.data_offset, record.data_length))
            return false;
        emit send_upgrade_state(progress, true);
    }
    return true;
}

/// What is queued here comes behind the signals that are queued for the same thread. Without this,
/// segments that nothing is sent for would come faster than a window can show them.
void upgrade_thread_t::wait_until_seen()
{
    const auto seen = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        this, [seen] { seen->release(); }, Qt::QueuedConnection);
    seen->tryAcquire(1, notice_patience_ms);
}
