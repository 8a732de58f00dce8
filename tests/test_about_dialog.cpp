// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"
#include "tests/support/window_driver.h"
#include "ui/ui_about_dialog.h"
#include "ui/ui_waiting_dialog.h"
#include "ui/waiting_thread.h"

#include <QLabel>
#include <QMovie>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <ctime>

namespace {

const QString acknowledgment = "Open-source acknowledgment";
const QString document = "help/open-source_software_acknowledgment";

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class test_about_dialog : public QObject
{
    Q_OBJECT

private slots:
    void box_is_wrong_or_its_logo_takes_clicks();
    void viewer_fails_loudly_or_starts_through_many_processes();
    void acknowledgment_lacks_a_part_or_a_licence();
    void waiting_stands_still_or_ends();

private:
    ui_about_dialog_t *open_about();

    window_driver_t driver;
};

ui_about_dialog_t *test_about_dialog::open_about()
{
    driver.choose("Help", "About");
    return qobject_cast<ui_about_dialog_t *>(QApplication::activeModalWidget());
}

void test_about_dialog::box_is_wrong_or_its_logo_takes_clicks()
{
    ui_about_dialog_t *const box = open_about();
    QVERIFY(box->windowTitle() == "About" && box->size() == QSize(280, 200));
    QVERIFY(!box->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    const auto *const logo = box->findChild<QAbstractButton *>("aboutLogo");
    QVERIFY(logo->testAttribute(Qt::WA_TransparentForMouseEvents));
    QVERIFY(logo->text() == "Corvane" && !logo->icon().isNull());
    QCOMPARE(logo->iconSize(), QSize(32, 32));
    const auto labels = box->findChildren<QLabel *>();
    QCOMPARE(labels.value(0)->text() + labels.value(1)->text(),
             QString("\tVersion: V1.2.3\tBuild: 2024/6/12"));
    QVERIFY(QTest::qWaitForWindowActive(box));
    QCOMPARE(press_return_everywhere(*box), QStringList(acknowledgment));
    QVERIFY(box->findChild<QProcess *>() == nullptr);
    QTest::keyClick(box, Qt::Key_Escape);
    QVERIFY(!box->isVisible());
}

void test_about_dialog::viewer_fails_loudly_or_starts_through_many_processes()
{
    ui_about_dialog_t *const boxes[] = {open_about(), open_about()};
    const QString help = QCoreApplication::applicationDirPath() + '/' + document + ".html";
    const QString any_viewer = QFileInfo(CORVANE_NOTING_VIEWER).absoluteFilePath();
    const QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/viewer 查看 XXXXXX"));
    QVERIFY(QDir::setCurrent(folder.path()));
#ifdef Q_OS_WIN
    // The system's own viewer comes behind the one in the working directory.
    const QString viewer = "hh.exe";
    const QByteArray to_show = document.toUtf8() + ".chm";
    QVERIFY(QFile::copy(any_viewer, viewer));
    QVERIFY(perform(*boxes[1], acknowledgment));
#else
    const QString viewer = folder.filePath("xdg-open");
    const QByteArray to_show = help.toUtf8();
    qputenv("PATH", folder.path().toLocal8Bit());
    QVERIFY(perform(*boxes[1], acknowledgment));
    QTRY_COMPARE(boxes[1]->findChild<QProcess *>()->error(), QProcess::FailedToStart);
    QVERIFY(QFile::copy(any_viewer, viewer));
    QVERIFY(perform(*boxes[1], acknowledgment));
#endif
    const auto *const process = boxes[1]->findChild<QProcess *>();
    QTRY_COMPARE(process->state(), QProcess::NotRunning);
    boxes[1]->close();
    for (const int box : {0, 1}) {
        QVERIFY(perform(*boxes[box], acknowledgment));
        QTRY_COMPARE(process->state(), QProcess::NotRunning);
    }
    QVERIFY(boxes[0]->isVisible() && boxes[0]->findChild<QProcess *>() == nullptr);
    boxes[0]->close();
    QCOMPARE(driver.take_boxes(), QStringList());

    QCOMPARE(read(viewer + ".shown"), (to_show + '\n').repeated(3));
    QDir::setCurrent(QDir::tempPath()); // or Windows keeps the folder
}

void test_about_dialog::acknowledgment_lacks_a_part_or_a_licence()
{
    const QString html = read(QCoreApplication::applicationDirPath() + '/' + document + ".html");
    for (const char *const part : {"Qt Svg", "Corvane Sans CN", "CLI11"})
        QVERIFY2(html.contains(QString("<h3>") + part), part);
    QCOMPARE(html.contains("<h3>Qt Serial Port"), CORVANE_SERIAL_LINE != 0);
    const QStringList links = html.split("Licence: <a href=\"#").mid(1);
    QVERIFY(!links.isEmpty());
    for (const QString &link : links) {
        const QString text = html.section("<h3 id=\"" + link.section('"', 0, 0) + "\">", 1, 1);
        QVERIFY2(text.section("</pre>", 0, 0).size() > 500, qPrintable(link.section('"', 0, 0)));
    }
}

void test_about_dialog::waiting_stands_still_or_ends()
{
    waiting_thread thread;
    QScopedPointer<QWidget> dialog;
    for (QWidget *const widget : QApplication::topLevelWidgets())
        if (qobject_cast<ui_waiting_dialog_t *>(widget) != nullptr)
            dialog.reset(widget);
    QVERIFY(dialog && dialog->isVisible() && !dialog->isModal());
    QCOMPARE(dialog->findChild<QLabel *>()->movie()->state(), QMovie::Running);

    [[maybe_unused]] const std::clock_t before = std::clock();
    thread.start();
    QVERIFY(!thread.wait(100));
#ifndef Q_OS_WIN // whose clock() goes on while the program sleeps
    QVERIFY2(std::clock() - before < CLOCKS_PER_SEC / 20, "it burns a core");
#endif
    thread.terminate();
    QVERIFY(thread.wait());
}

CORVANE_GUI_TEST_MAIN(test_about_dialog)
#include "test_about_dialog.moc"
