// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "tests/support/conversation.h"
#include "tests/support/package_folder.h"
#include "tests/support/recorded_pauses.h"
#include "tests/support/simulator.h"
#include "upgrade/segment_handlers.h"
#include "upgrade/upgrade_file.h"
#include "upgrade/upgrade_protocol.h"
#include "upgrade/upgrade_thread.h"

#include <QtTest/QTest>

namespace {

const QByteArray resource = "USB0::0xA17E::0x2000::U1::INSTR";
const QByteArray ready = "UPREADY?";
const QByteArray reboot_text("REBOOT", 7);
const QByteArray loader_text("REBOOT 1", 9);

/// Everything that an instrument is to receive for an image that it takes.
QByteArrayList image_texts(const QByteArray &announce, const QByteArray &image)
{
    QByteArrayList texts{announce + QByteArray::number(image.size()), ready};
    for (int begin = 0; begin < image.size(); begin += 2048)
        texts << "UPGRADE " + image.mid(begin, 2048).leftJustified(2048, '\xFF') << ready;
    return texts;
}

/// Runs the upgrade thread. Answers what it says and does: "length:type", bytes sent, "reboot",
/// "success"; nothing when it hangs.
QString run_upgrade(const std::string &package)
{
    QStringList said;
    upgrade_thread_t thread;
    QObject::connect(
        &thread, &upgrade_thread_t::init_progress_bar, &thread,
        [&said](ulong length, uint type) { said << QString("%1:%2").arg(length).arg(type); },
        Qt::DirectConnection);
    QObject::connect(
        &thread, &upgrade_thread_t::send_upgrade_state, &thread,
        [&said](ulong sent, bool ok) { said << QString(ok ? "%1" : "failed at %1").arg(sent); },
        Qt::DirectConnection);
    QObject::connect(
        &thread, &upgrade_thread_t::send_upgrade_success, &thread, [&said] { said << "success"; },
        Qt::DirectConnection);
    recorded_pauses_t::instance().on_pause([&said](unsigned long pause) {
        if (pause == 500 && said.last() != "reboot")
            said << "reboot";
    });
    set_upgrade_file_name(package);
    thread.start();
    return thread.wait(30'000) ? said.join(' ') : QString();
}

} // namespace

class test_upgrade_engine : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void segment_arrives_changed_or_fails_unnoticed();
    void unready_instrument_is_taken_for_ready();
    void pause_is_missing_or_a_call_out_of_order();
    void mixed_package_is_lost_on_the_way();
    void failed_upgrade_goes_on_or_leaves_out_the_reboot();
    void program_that_ends_waits_for_readiness();

private:
    /// Sends a segment as the thread does, up to its end or a failure, and answers its progress.
    quint32 send(quint32 type, const QByteArray &payload, quint32 length);

    simulator_t simulator;
    package_folder_t folder;
};

void test_upgrade_engine::init()
{
    simulator.reset();
    simulator.load_fleet(R"({"default_timeout_ms": 100, "reboot_ms": 0, "instruments": [
        {"product": 44, "serial": "U1", "resources": [")" +
                         resource + R"("]}]})");
    recorded_pauses_t::instance().reset();
    fill_segment_handlers();
    QVERIFY(drv_device_t::instance()->usb_connect_resource(resource.toStdString()));
    drv_command_t::instance()->set_link_mode(link_modes::connected);
}

quint32 test_upgrade_engine::send(quint32 type, const QByteArray &payload, quint32 length)
{
    const std::filesystem::path file =
        to_file_path(folder.write_package(QByteArray(124, 'x') + payload));
    std::uint32_t progress = 0;
    while (progress < length && dispatch_segment(file, progress, type, 124, length)) {
    }
    return progress;
}

void test_upgrade_engine::segment_arrives_changed_or_fails_unnoticed()
{
    const auto check = [this](quint32 type, const QByteArray &payload, quint32 length, quint32 sent,
                              const QByteArrayList &texts) {
        QCOMPARE(send(type, payload, length), sent);
        QCOMPARE(simulator.take_texts(), texts);
    };
    for (const quint32 length : {1U, 2048U, 2049U}) {
        const QByteArray image = pattern(static_cast<int>(length));
        // Only the low byte of a type counts.
        check(0xABCDEF03U, image, length, length, image_texts("BOOTUG ", image));
    }
    const QPair<quint32, QByteArray> parameters[] = {{5, "SYSTem:DEVice:PRODUCTUG "},
                                                     {6, "SYSTem:DEVice:MANUFTRUG "},
                                                     {8, "SYSTem:DEVice:PIDUG "},
                                                     {9, "SYSTem:DEVice:VIDUG "},
                                                     {10, "SYSTem:DEVice:PRODUCTUG:ID "}};
    for (const auto &[type, command] : parameters) {
        const auto longest = static_cast<quint32>(100 - command.size());
        const QByteArray full =
            QByteArray("\0\r\n\xff", 4).leftJustified(static_cast<int>(longest), 'p');
        check(type, full, longest, longest, {command + full});
        check(type, full + 'p', longest + 1, 0, {});
    }
    check(2, "a", 1, 0, {});
    check(5, "a", 2, 0, {});
    const QByteArray image = pattern(5000);
    check(3, image.left(4999), 5000, 4096, image_texts("BOOTUG ", image).mid(0, 6));
    // An instrument that is lost gets no image.
    simulator.fail_call(CORVANE_SIM_FIND_RSRC);
    check(1, "host", 4, 0, {loader_text});
}

void test_upgrade_engine::unready_instrument_is_taken_for_ready()
{
    const struct
    {
        QByteArray reply;
        int times;
        bool is_ready;
        int polls;
    } rows[] = {
        {"0\n", 11, true, 12},    {"0\n", 12, false, 12}, {"1", 12, false, 12},
        {"1\r\n", 12, false, 12}, {"1\nx", 1, true, 1},
    };
    for (const auto &row : rows) {
        simulator.script_reply(ready, row.reply, row.times);
        QCOMPARE(wait_ready(), row.is_ready);
        QCOMPARE(simulator.take_texts().count(ready), row.polls);
    }
    simulator.script_reply(ready, "0\n");
    QCOMPARE(send(3, "boot", 4), 0U);
    QCOMPARE(simulator.take_texts().size(), 13);
}

void test_upgrade_engine::pause_is_missing_or_a_call_out_of_order()
{
    const QString query = "write 5 10 read";
    const QString reopen = " 500 " + QString("open 500 ").repeated(10) + "find open";
    const QString two_blocks =
        ("write 5 10 " + query) + QString(" write 5 150 " + query).repeated(2);
    const auto sent = [this](quint32 type, const QByteArray &payload) {
        return conversation(simulator, [&] { send(type, payload, quint32(payload.size())); });
    };
    QCOMPARE(sent(5, "TMX"), QString("write 5 30"));
    QCOMPARE(sent(3, pattern(2049)), two_blocks);
    QCOMPARE(sent(1, pattern(2049)), "write 5 close" + reopen + ' ' + two_blocks);
    QCOMPARE(conversation(simulator, reboot), "write 5 close" + reopen);
    simulator.fail_call(CORVANE_SIM_WRITE);
    QCOMPARE(conversation(simulator, reboot), QString("write 5 500 open"));
    simulator.fail_call(CORVANE_SIM_WRITE);
    QCOMPARE(conversation(simulator, reboot_to_loader), "write 5 close" + reopen);
}

void test_upgrade_engine::mixed_package_is_lost_on_the_way()
{
    const QByteArray boot = pattern(2049);
    const QByteArray host = pattern(3000);
    const QString said = run_upgrade(folder.write_package(
        make_package(44, {{3, boot}, {5, "TMX"}, {3, {}}, {1, host}, {8, "\x20"}})));

    QCOMPARE(said, QString("2049:3 2048 2049 2049 3:5 3 3 0:3 0 "
                           "3000:1 reboot 2048 3000 3000 1:8 1 1 reboot success"));
    QCOMPARE(simulator.take_texts(), image_texts("BOOTUG ", boot)
                                         << "SYSTem:DEVice:PRODUCTUG TMX" << loader_text
                                         << image_texts("HOSTUG ", host)
                                         << "SYSTem:DEVice:PIDUG \x20" << reboot_text);
    QCOMPARE(simulator.images(resource), (QList<QPair<int, QByteArray>>{{3, boot}, {1, host}}));
    QVERIFY(drv_device_t::instance()->link_write("*CLS", 4));

    // No byte is to be at the place of an empty segment.
    const QByteArray empty = package_header(44, 500) + segment_record(3, 500, 0);
    QCOMPARE(run_upgrade(folder.write_package(empty)), QString("0:3 0 reboot success"));
}

void test_upgrade_engine::failed_upgrade_goes_on_or_leaves_out_the_reboot()
{
    // The second is cut short, the third goes round in an empty segment.
    const QPair<QByteArray, const char *> rows[] = {
        {make_package(44, {{5, "TMX"}, {7, "?"}, {8, "8"}}), "1:7 failed at 0"},
        {make_package(44, {{5, "TMX"}, {3, "boot"}}).chopped(1), "4:3 failed at 0"},
        {package_header(44, 500) + segment_record(5, 124, 3) + "TMX" + segment_record(3, 127, 0),
         "0:3 0 failed at 0"}};
    for (const auto &[package, last] : rows) {
        QCOMPARE(run_upgrade(folder.write_package(package)),
                 QString("3:5 3 3 %1 reboot").arg(last));
        QCOMPARE(simulator.take_texts(),
                 (QByteArrayList{"SYSTem:DEVice:PRODUCTUG TMX", reboot_text}));
        QVERIFY(drv_device_t::instance()->link_write("*CLS", 4));
        simulator.take_texts();
    }
}

void test_upgrade_engine::program_that_ends_waits_for_readiness()
{
    simulator.script_reply(ready, "0\n");
    set_upgrade_file_name(folder.write_package(make_package(44, {{3, "boot"}})));
    upgrade_thread_t thread;
    recorded_pauses_t::instance().on_pause([](unsigned long pause) {
        if (pause == 10)
            QThread::currentThread()->requestInterruption();
    });
    thread.start();
    QVERIFY(thread.wait(30'000));
    QCOMPARE(simulator.take_texts(), (QByteArrayList{"BOOTUG 4", reboot_text}));
}

QTEST_GUILESS_MAIN(test_upgrade_engine)
#include "test_upgrade_engine.moc"
