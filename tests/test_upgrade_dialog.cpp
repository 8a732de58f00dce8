// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "tests/support/box_watcher.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/package_folder.h"
#include "tests/support/recorded_pauses.h"
#include "tests/support/simulator.h"
#include "ui/dialog/ui_upgrade_dialog.h"
#include "upgrade/accepted_id.h"
#include "upgrade/upgrade_thread.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QSemaphore>
#include <QThread>
#include <QtTest/QTest>

#include <memory>
#include <utility>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

namespace {

const QByteArray resource = "USB0::0xA17E::0x2000::D1::INSTR";
const QByteArray reboot_text("REBOOT", 7);
const QByteArray loader_text("REBOOT 1", 9);
constexpr int patience_ms = 30'000;
constexpr int pace_ms = 20;
const QString begin_box = QStringLiteral("Information: Upgrade begin! [OK]");
const QString error_box = QStringLiteral("Information: Upgrade file error! [OK, Close]");
const QString busy_box = QStringLiteral("Information: Upgrading! [OK, Close]");
const QString fail_box = QStringLiteral("Information: Upgrade FAIL! [OK, Close]");
const QString ok_box = QStringLiteral("Information: Upgrade OK! [OK, Close]");

} // namespace

class test_upgrade_dialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { dialog.reset(); }
    void accepted_identifiers_are_mixed_up();
    void bar_leaves_its_range();
    void wrong_or_cancelled_file_is_sent();
    void package_is_sent_twice_or_incompletely();
    void failure_looks_like_success();
    void closing_stops_a_transfer();
    void end_of_the_program_breaks_a_transfer();
    void empty_segments_freeze_the_window();

private:
    void open_dialog();
    /// Presses Browse and types the path, or presses Escape when it is empty.
    void choose(const QString &path);
    /// Writes a package, chooses it and presses Begin.
    void begin(const QString &name, const QByteArray &package);
    int bar() const { return dialog->findChild<QProgressBar *>()->value(); }
    /// What all boxes said since the last call of `open_dialog`.
    const QStringList &said();

    simulator_t simulator;
    package_folder_t folder;
    box_watcher_t boxes;
    QStringList all_boxes;
    std::unique_ptr<ui_upgrade_dialog_t> dialog;
};

void test_upgrade_dialog::init()
{
    simulator.reset();
    simulator.load_fleet(R"({"default_timeout_ms": 100, "reboot_ms": 0, "instruments": [
        {"product": 44, "serial": "D1", "upgrade_id": [44, 1, 2, 1], "resources": [")" +
                         resource + R"("]}]})");
    QVERIFY(drv_device_t::instance()->usb_connect_resource(resource.toStdString()));
    drv_command_t::instance()->set_link_mode(link_modes::connected);
    recorded_pauses_t::instance().reset();
    // Leaves room for what the tests do between two calls, also where pauses are short.
    for (const corvane_sim_entry entry : {CORVANE_SIM_WRITE, CORVANE_SIM_OPEN})
        simulator.add_fault({CORVANE_SIM_FAULT_DELAY, entry, 1, nullptr, 1, pace_ms, nullptr, 0});
    open_dialog();
}

void test_upgrade_dialog::open_dialog()
{
    dialog = std::make_unique<ui_upgrade_dialog_t>();
    dialog->show();
    QCOMPARE(simulator.take_texts(), QByteArrayList{"UPGRADE:ID?"});
    boxes.take_boxes();
    all_boxes.clear();
}

void test_upgrade_dialog::choose(const QString &path)
{
    const QString working_folder = QDir::currentPath();
    QVERIFY(choose_file(*dialog, path, [](const QFileDialog &chooser) {
        QCOMPARE(chooser.windowTitle(), QStringLiteral("Select upgrade files"));
        QCOMPARE(chooser.nameFilters(), QStringList{"*.ADS"});
        QVERIFY(chooser.directory().isRoot() && chooser.parent() == nullptr);
        QVERIFY(QDir::setCurrent(QDir::tempPath())); // as Windows' own dialog does
    }));
    QCOMPARE(QDir::currentPath(), working_folder);
}

void test_upgrade_dialog::begin(const QString &name, const QByteArray &package)
{
    const QString path = folder.write(name, package);
    choose(path);
    QCOMPARE(dialog->findChild<QLineEdit *>()->text(), path);
    QVERIFY(perform(*dialog, "Begin"));
}

const QStringList &test_upgrade_dialog::said()
{
    all_boxes += boxes.take_boxes();
    return all_boxes;
}

void test_upgrade_dialog::accepted_identifiers_are_mixed_up()
{
    const struct
    {
        QByteArray reply;
        QList<int> accepted;
    } rows[] = {{"9,-3,-1,0\n", {-3, -2, -1}}, {"9,-3,-1,2\n", {9}}, {"", {}}};
    for (const auto &row : rows) {
        simulator.script_reply("UPGRADE:ID?", row.reply, 1);
        open_dialog();
        for (int id = -4; id < 12; ++id)
            QCOMPARE(check_product_id(id), row.accepted.contains(id));
    }
}

void test_upgrade_dialog::bar_leaves_its_range()
{
    // In 32 bits, which the product of the largest goes beyond.
    const struct
    {
        ulong total, done;
        int value;
    } rows[] = {{100, 0, 0},
                {100, 99, 99},
                {100, 100, 99},
                {1000, 9, 1},
                {1000, 509, 50},
                {50'000'000, 42'900'000, 85},
                {50'000'000, 43'000'000, 1},
                {0, 0, 0}};
    for (const auto &row : rows) {
        dialog->init_progress_bar_slot(row.total, 3);
        QCOMPARE(bar(), 1);
        dialog->set_progress_bar_slot(row.done, true);
        QCOMPARE(bar(), row.value);
    }
}

void test_upgrade_dialog::wrong_or_cancelled_file_is_sent()
{
    QVERIFY(perform(*dialog, "Begin"));
    begin(QStringLiteral("other.ADS"), make_package(1, {{5, "TMX"}}));
    begin(QStringLiteral("펌웨어.ADS"), make_package(44, {{5, "TMX"}}));
    choose(folder.write(QStringLiteral("a.ADS"), make_package(44, {{5, "TMX"}})));
    choose(QString());
    QVERIFY(perform(*dialog, "Begin"));
    QStringList errors{error_box, error_box, error_box, error_box};
#ifndef Q_OS_WIN // whose pipes lie in no folder
    // Nobody writes into this pipe: who opens it waits for ever.
    QCOMPARE(mkfifo(QFile::encodeName(folder.path(QStringLiteral("b.ADS"))), 0600), 0);
    choose(folder.path(QStringLiteral("b.ADS")));
    QVERIFY(perform(*dialog, "Begin"));
    errors.append(error_box);
#endif
    QCOMPARE(dialog->findChild<QLineEdit *>()->text(), folder.path(QStringLiteral("a.ADS")));
    QCOMPARE(said(), errors);
    QCOMPARE(simulator.take_texts(), QByteArrayList());
}

void test_upgrade_dialog::package_is_sent_twice_or_incompletely()
{
    const QByteArray image = pattern(3 * 2048);
    QSemaphore gate;
    recorded_pauses_t::instance().on_pause([&gate, blocks = 0](unsigned long pause) mutable {
        if (pause == 150 && ++blocks == 2)
            gate.tryAcquire(1, patience_ms);
    });
    begin(QStringLiteral("固件 1.ADS"), make_package(44, {{5, "TMX"}, {3, image}}));
    QTRY_COMPARE_WITH_TIMEOUT(bar(), 33, patience_ms);
    QVERIFY(perform(*dialog, "Begin"));
    gate.release();
    QTRY_COMPARE_WITH_TIMEOUT(bar(), 100, patience_ms);
    QTRY_COMPARE(said(), (QStringList{begin_box, begin_box, ok_box}));
    QCOMPARE(simulator.images(resource), (QList<QPair<int, QByteArray>>{{3, image}}));
    const QByteArrayList texts = simulator.take_texts();
    QCOMPARE(texts.count("SYSTem:DEVice:PRODUCTUG TMX") + texts.count(reboot_text), 2);
    QVERIFY(drv_device_t::instance()->link_write("*CLS", 4));
}

void test_upgrade_dialog::failure_looks_like_success()
{
    simulator.fail_block(resource, 2);
    begin(QStringLiteral("a.ADS"), make_package(44, {{3, pattern(3 * 2048)}}));
    QTRY_VERIFY_WITH_TIMEOUT(said().contains(fail_box), patience_ms);
    QCOMPARE(bar(), 33);
    dialog.reset();
    QCOMPARE(said(), (QStringList{begin_box, fail_box}));
    QCOMPARE(simulator.take_texts().last(), reboot_text);
}

void test_upgrade_dialog::closing_stops_a_transfer()
{
    const QByteArray image = pattern(8 * 2048);
    begin(QStringLiteral("a.ADS"), make_package(44, {{3, image}}));
    QTRY_VERIFY_WITH_TIMEOUT(bar() > 1, patience_ms);
    dialog->close();
    boxes.leave_until_another(QStringLiteral("Upgrading!"));
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    QCOMPARE(said(), (QStringList{begin_box, busy_box, ok_box, busy_box}));
    QVERIFY(dialog->isVisible());
    QCOMPARE(simulator.images(resource), (QList<QPair<int, QByteArray>>{{3, image}}));
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    QTRY_VERIFY(!dialog->isVisible());
    QCOMPARE(said().size(), 4);
}

void test_upgrade_dialog::end_of_the_program_breaks_a_transfer()
{
    const struct
    {
        QByteArray moment; ///< the beginning of the last text; empty when a box is up
        QString box;
        quint32 type;
        bool by_window = false;
    } rows[] = {{"UPGRADE ", "", 3},
                {"UPGRADE ", "", 3, true},
                {"UPGRADE ", "Upgrading!", 3},
                {loader_text, "", 1},
                {"", "Upgrade begin!", 3}};
    for (const auto &row : rows) {
        init();
        QWidget main_window;
        main_window.show();
        choose(folder.write(QStringLiteral("a.ADS"),
                            make_package(44, {{row.type, pattern(200'000)}})));
        boxes.leave_until_another(row.box);
        // Of its own accord a program ends so, but not one of QtTest.
        connect(qApp, &QGuiApplication::lastWindowClosed, &main_window, &QCoreApplication::quit);
        QByteArrayList texts;
        QTimer timer;
        connect(&timer, &QTimer::timeout, &main_window, [&] {
            texts += simulator.take_texts();
            const bool is_asked =
                qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr;
            const bool is_now = row.moment.isEmpty()
                                    ? is_asked
                                    : texts.value(texts.size() - 1).startsWith(row.moment);
            if (!is_now)
                return;
            timer.stop();
            QTimer::singleShot(1, &main_window, [&main_window, &row] {
                row.by_window ? void(main_window.close()) : QCoreApplication::exit(0);
            });
            if (!row.box.isEmpty() && !row.moment.isEmpty())
                dialog->close();
        });
        timer.start(1);
        QTimer::singleShot(0, &main_window, [this] { dialog->exec(); });
        QTimer::singleShot(0, dialog.get(), [this] { perform(*dialog, "Begin"); });
        QApplication::exec();
        boxes.leave_until_another({});
        dialog.reset();

        texts += simulator.take_texts();
        QVERIFY(texts.size() < 20);
        QCOMPARE(texts.isEmpty(), row.moment.isEmpty());
        QCOMPARE(texts.value(texts.size() - 1, reboot_text), reboot_text);
        QVERIFY(!texts.join().contains("HOSTUG "));
        QVERIFY(drv_device_t::instance()->link_write("*CLS", 4));
    }
}

void test_upgrade_dialog::empty_segments_freeze_the_window()
{
#ifdef Q_OS_WIN
    QSKIP("A chain this long has records with a Ctrl-Z, which text mode cannot read");
#endif
    QList<QPair<quint32, QByteArray>> segments;
    for (int count = 0; count < 100'000; ++count)
        segments.append({3, {}});
    begin(QStringLiteral("a.ADS"), make_package(44, segments));
    // Of the signals that come between two looks at the input.
    int signal_count = 0;
    int most_signals = 0;
    connect(
        dialog->findChild<upgrade_thread_t *>(), &upgrade_thread_t::send_upgrade_state,
        dialog.get(), [&] { ++signal_count; }, Qt::QueuedConnection);
    QTimer timer;
    connect(&timer, &QTimer::timeout, dialog.get(),
            [&] { most_signals = qMax(most_signals, std::exchange(signal_count, 0)); });
    timer.start(1);
    QTRY_COMPARE_WITH_TIMEOUT(said(), (QStringList{begin_box, ok_box}), 10 * patience_ms);
    QVERIFY2(most_signals < 10'000, qPrintable(QString::number(most_signals)));
}

QTEST_MAIN(test_upgrade_dialog)
#include "test_upgrade_dialog.moc"
