// SPDX-License-Identifier: MIT
// The transfer of a firmware image of so many MiB: its time beside the sum of the fixed pauses
// (bench_upgrade time MIB), or the memory that it takes beside the size of the image (bench_upgrade
// memory MIB).

#include "bench/figures.h"
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "tests/support/package_folder.h"
#include "tests/support/simulator.h"
#include "upgrade/package_format.h"
#include "upgrade/segment_handlers.h"
#include "upgrade/upgrade_file.h"
#include "upgrade/upgrade_protocol.h"
#include "upgrade/upgrade_thread.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

namespace {

constexpr int bytes_per_mib = 1024 * 1024;

/// Takes everything and keeps nothing, so that what memory grows is the program's.
constexpr const char *fleet = R"({"instruments": [
    {"identity": "TMX,BENCH,1,1", "resources": ["USB0::0xA17E::0x2000::BENCH::INSTR"]}]})";

/// Writes a package piece by piece, for its size must not show in the memory.
QString write_package(const package_folder_t &folder, quint32 image_bytes)
{
    const quint32 begin = upgrade_header_bytes + segment_record_bytes;
    QString path =
        folder.write(QStringLiteral("image.ADS"), package_header(44, begin + image_bytes) +
                                                      segment_record(3, begin, image_bytes));
    QFile file(path);
    if (!file.open(QIODevice::Append))
        qFatal("the package cannot be written");
    const QByteArray piece = pattern(bytes_per_mib);
    for (quint32 written = 0; written < image_bytes; written += bytes_per_mib)
        file.write(piece);
    return path;
}

double pauses_ms(quint32 image_bytes)
{
    constexpr double query_ms = drv_device_t::write_pause_ms + drv_device_t::query_pause_ms;
    constexpr double block_ms = drv_device_t::write_pause_ms + segment_pauses::block_ms + query_ms;
    constexpr double announce_ms =
        drv_device_t::write_pause_ms + segment_pauses::announce_ms + query_ms;
    constexpr double reboot_ms = drv_device_t::write_pause_ms + reboot_pause_ms +
                                 drv_device_t::usb_open_attempts * drv_device_t::usb_retry_pause_ms;
    return image_bytes / double(image_block_bytes) * block_ms + announce_ms + reboot_ms;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 3)
        qFatal("bench_upgrade time|memory MIB");
    const bool time_wanted = QByteArray(argv[1]) == "time";
    const int mib = std::max(1, QByteArray(argv[2]).toInt());
    const auto image_bytes = static_cast<quint32>(mib * bytes_per_mib);
    const package_folder_t folder;
    set_upgrade_file_name(to_package_name(write_package(folder, image_bytes)));

    simulator_t simulator;
    simulator.load_fleet(fleet);
    simulator.stop_log();
    simulator.script_reply("UPREADY?", "1\n");
    drv_device_t::instance()->usb_connect_resource("USB0::0xA17E::0x2000::BENCH::INSTR");
    upgrade_thread_t thread;
    bool complete = false;
    QObject::connect(
        &thread, &upgrade_thread_t::send_upgrade_success, &thread, [&complete] { complete = true; },
        Qt::DirectConnection);

    const double memory_before = peak_memory_kib();
    QElapsedTimer timer;
    timer.start();
    thread.start();
    thread.wait();
    const double wall_ms = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    if (!complete)
        qFatal("the transfer failed");
    const std::string title = "upgrade, image of " + std::to_string(mib) + " MiB, ";
    if (time_wanted)
        print_figure({title + "against its pauses", "ms", wall_ms, pauses_ms(image_bytes), 1.02});
    else
        print_figure({title + "growth of memory", "KiB", peak_memory_kib() - memory_before,
                      mib * 1024.0, 0});
    return 0;
}
