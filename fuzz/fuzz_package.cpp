// SPDX-License-Identifier: MIT
// Reads, examines and transfers arbitrary packages. Whatever a package says, everything comes to an
// end, and the instrument gets nothing but blocks and commands of the sizes that it takes.
//
// When the first byte is odd, the other bytes are a package with a plain header, which is
// enciphered here and given what every header holds: no mutation gets through the cipher.

#include "drv/drv_device.h"
#include "tests/support/simulator.h"
#include "tools/package_inspector.h"
#include "upgrade/accepted_id.h"
#include "upgrade/header_cipher.h"
#include "upgrade/package_reader.h"
#include "upgrade/segment_chain.h"
#include "upgrade/segment_handlers.h"
#include "upgrade/upgrade_file.h"
#include "upgrade/upgrade_thread.h"

#include <QCoreApplication>
#include <QTemporaryFile>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr int block_message_bytes = 8 + static_cast<int>(image_block_bytes);

/// Takes everything and keeps nothing.
constexpr const char *fleet = R"({"instruments": [
    {"identity": "TMX,FUZZ,1,1", "resources": ["USB0::0xA17E::0x2000::FUZZ::INSTR"]}]})";

void require(bool holds, const char *what)
{
    if (!holds)
        qFatal("%s", what);
}

void accept_every_product()
{
    upgrade_id_t all;
    all.lowest = std::numeric_limits<int>::min();
    all.highest = std::numeric_limits<int>::max();
    set_accepted_ids(all);
}

simulator_t &ready_simulator()
{
    static simulator_t simulator;
    static const bool prepared = [] {
        simulator.load_fleet(fleet);
        simulator.script_reply("UPREADY?", "1\n");
        return drv_device_t::instance()->usb_connect_resource("USB0::0xA17E::0x2000::FUZZ::INSTR");
    }();
    require(prepared, "no link");
    return simulator;
}

QByteArray package_of(const std::uint8_t *data, std::size_t size)
{
    QByteArray package(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    if (data[0] % 2 == 0 || size - 1 < upgrade_header_bytes)
        return package;
    auto *const header = reinterpret_cast<std::uint8_t *>(package.data());
    std::copy(header_magic.begin(), header_magic.end(), header + header_layout::magic);
    des_crypt(header, header, upgrade_header_bytes, header_key.data(), header_key.size(), false);
    return package;
}

void walk_chain(const std::filesystem::path &path, const upgrade_header_t &header, int file_bytes)
{
    segment_chain_t chain(path, header_end_offset(header));
    int steps = 0;
    while (chain.next() == chain_step_t::segment)
        require(++steps <= file_bytes, "a chain goes round");
}

void transfer(const std::string &name)
{
    simulator_t &simulator = ready_simulator();
    set_upgrade_file_name(name);
    upgrade_thread_t thread;
    thread.start();
    thread.wait();
    const QByteArrayList texts = simulator.take_texts();
    for (const QByteArray &text : texts) {
        const bool is_block = text.startsWith("UPGRADE ") && text.size() == block_message_bytes;
        require(is_block || text.size() <= static_cast<int>(parameter_command_bytes),
                "a command is too long");
    }
    require(texts.contains(QByteArray("REBOOT", 7)), "the instrument is left as it is");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // Lives as long as the process, which libFuzzer ends without a word.
    new QCoreApplication(*argc, *argv);
    accept_every_product();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray package = package_of(data, size);
    QTemporaryFile file;
    require(file.open() && file.write(package) == package.size() && file.flush(), "no file");
    const std::string name = to_package_name(file.fileName());
    upgrade_header_t header{};
    const bool accepted = read_upgrade_header(to_file_path(name), header);
    require(accepted == header_has_magic(header), "a header is misjudged");
    const package_report_t report = package_inspector_t(file.fileName().toStdString()).inspect();
    require(report.has_magic == accepted, "the inspector sees another header");
    require(report.segments.size() <= package_inspector_t::most_segments, "too many segments");
    if (!accepted)
        return 0;
    walk_chain(to_file_path(name), header, package.size());
    transfer(name);
    return 0;
}
