// SPDX-License-Identifier: MIT
#include "drv/drv_command.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/window_driver.h"

#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

/// Runs with no VISA library and among the serial ports of support/serial_ports.umockdev.in. Only
/// one of them is an instrument's; a corvane-sim process is behind it.
class test_serial_instrument : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void wrong_port_is_taken_or_a_write_is_lost();
    void console_misses_its_instrument();
    void paced_reply_is_read_wrongly();
    void late_reply_answers_the_next_query();
    void lost_line_hangs_or_cannot_be_opened_again();

private:
    void plug(const QStringList &options = {});
    void unplug();
    /// How many bytes have arrived that the program has not read.
    int waiting_bytes() const;

    drv_command_t &command = *drv_command_t::instance();
    QTemporaryDir folder{QDir::tempPath() + "/串口 XXXXXX"};
    QFile log{folder.filePath("log")}; ///< what the instrument received, a line a message
    QProcess sim;
};

void test_serial_instrument::plug(const QStringList &options)
{
    const QDir devices(qEnvironmentVariable("UMOCKDEV_DIR") + "/dev");
    devices.mkpath(".");
    sim.setStandardErrorFile(log.fileName());
    sim.start(CORVANE_SIM,
              QStringList{"serial", "--log", "--link", devices.filePath(CORVANE_SERIAL_PORT)} +
                  options);
    while (!sim.canReadLine() && sim.waitForReadyRead()) {
    }
    if (sim.readLine().isEmpty() || !log.open(QIODevice::ReadOnly))
        qFatal("corvane-sim does not start");
}

void test_serial_instrument::unplug()
{
    sim.terminate();
    QVERIFY(sim.waitForFinished());
    QCOMPARE(sim.exitCode(), 0);
    log.close();
}

void test_serial_instrument::cleanup()
{
    command.serial_close();
    if (sim.state() != QProcess::NotRunning)
        unplug();
}

void test_serial_instrument::wrong_port_is_taken_or_a_write_is_lost()
{
    plug();
    window_driver_t driver;
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.devices(), QStringList(CORVANE_SERIAL_PORT));
    QCOMPARE(driver.window.findChild<QComboBox *>()->itemData(0).toInt(), 1);
    QCOMPARE(driver.status_text(), "TMX5044,Serial:SN44001,Version:1.0.0");
    QCOMPARE(driver.link_text(), "(USB)");
    QCOMPARE(driver.lit_ports(), QStringList({"B", "C", "14", "9"}));
    const QByteArray queries = "GET:COLOR? A\nGET:COLOR? B\nGET:COLOR? C\nGET:COLOR? D\n"
                               "ROUTes?\nROUTes?\nROUTes?\nROUTes?\n";
    QCOMPARE(log.readAll(),
             "SHOW:MNAMe?\nSHOW:SERial?\nSHOW:SVERsion?\nSHOW:PRODect:ID?\n" + queries);

    QVERIFY(driver.click("Reset"));
    QCOMPARE(log.readAll(), "ADD:ROUTe A0\nADD:ROUTe B0\nADD:ROUTe C0\nADD:ROUTe D0\n" + queries);
    QVERIFY(driver.click("C") && driver.click("8"));
    QCOMPARE(driver.lit_ports(), QStringList({"C", "8"}));
}

void test_serial_instrument::console_misses_its_instrument()
{
    plug();
    window_driver_t driver;
    QVERIFY(driver.click("Rescan"));
    QVERIFY(use_dialog([&] { driver.choose("Tool", "Scpi"); },
                       [](const QDialog &dialog) {
                           QVERIFY(perform(dialog, "Query"));
                           QCOMPARE(shown(dialog, "Reply"), "TMX,TMX5044,SN44001,1.0.0");
                           QVERIFY(perform(dialog, "Command=ROUTes?"));
                           QVERIFY(perform(dialog, "Write"));
                           QTRY_COMPARE((perform(dialog, "Read"), shown(dialog, "Reply")),
                                        "0,14,9,0");
                       }));
}

void test_serial_instrument::paced_reply_is_read_wrongly()
{
    // Too late, in close pieces, in far ones.
    const QPair<QStringList, const char *> rows[] = {{{"--delay", "120"}, "0,14,9,0"},
                                                     {{"--delay", "400"}, "before"},
                                                     {{"--fragment", "4,2"}, "0,14,9,0"},
                                                     {{"--fragment", "4,60"}, "0,1"},
                                                     {{"--fragment", "1,60"}, ""}};
    for (const auto &[pace, text] : rows) {
        std::string out = "before";
        QVERIFY(!command.send_command("ROUTes?") && !command.query("ROUTes?", out));
        plug(pace);
        QVERIFY(command.serial_open(CORVANE_SERIAL_PORT) && command.serial_open("another"));
        QVERIFY(!command.read_reply(out));
        QCOMPARE(command.query("ROUTes?", out), text != QByteArray("before"));
        QCOMPARE(out.c_str(), text);
        cleanup();
    }
}

int test_serial_instrument::waiting_bytes() const
{
    const QByteArray path = qgetenv("UMOCKDEV_DIR") + "/dev/" CORVANE_SERIAL_PORT;
    const int line = open(path.constData(), O_RDONLY | O_NOCTTY);
    int count = 0;
    ioctl(line, FIONREAD, &count);
    ::close(line);
    return count;
}

void test_serial_instrument::late_reply_answers_the_next_query()
{
    plug();
    QVERIFY(command.serial_open(CORVANE_SERIAL_PORT));
    std::string out;
    for (const bool qt_has_read : {false, true}) {
        QVERIFY(command.send_command("*IDN?"));
        QElapsedTimer patience;
        patience.start();
        while (waiting_bytes() == 0 && patience.elapsed() < 5000) {
        }
        if (qt_has_read)
            QTRY_COMPARE(waiting_bytes(), 0);
        QVERIFY(command.query("ROUTes?", out));
        QCOMPARE(out, std::string("0,14,9,0"));
    }
}

void test_serial_instrument::lost_line_hangs_or_cannot_be_opened_again()
{
    plug();
    window_driver_t driver;
    QVERIFY(driver.click("Rescan") && driver.click("A"));
    unplug();
    QElapsedTimer lost;
    lost.start();
    QVERIFY(driver.click("3") && driver.click("Reset"));
    // Left open, the line would keep a core busy.
    QTRY_VERIFY(!command.send_command("*CLS"));
    QVERIFY(driver.click("Rescan"));
    // That would be a dozen queries of 200 ms at most, but a line that is gone is not waited for.
    QVERIFY2(lost.elapsed() < 2400, qPrintable(QString::number(lost.elapsed())));
    QCOMPARE(driver.lit_ports(), QStringList());
    QCOMPARE(driver.devices(), QStringList(CORVANE_SERIAL_PORT));
    QCOMPARE(driver.take_boxes(), QStringList());

    plug();
    QVERIFY(driver.click("Rescan"));
    QCOMPARE(driver.lit_ports(), QStringList({"B", "C", "14", "9"}));
    // Now the line goes while a reply is awaited, and comes back.
    std::string out = "before";
    QVERIFY(command.send_command("REBOOT") && !command.query("ROUTes?", out));
    QTRY_VERIFY(sim.canReadLine());
    QVERIFY(driver.click("Rescan") && driver.click("D") && driver.click("24"));
    QCOMPARE(driver.lit_ports(), QStringList({"D", "24"}));
    // A text is out when the call returns, not when the event loop comes round.
    QVERIFY(command.send_command("REBOOT") && sim.waitForReadyRead(5000));
}

CORVANE_GUI_TEST_MAIN(test_serial_instrument)
#include "test_serial_instrument.moc"
