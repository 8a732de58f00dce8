// SPDX-License-Identifier: MIT
#include "tests/support/dialog_driver.h"
#include "tests/support/window_driver.h"
#include "ui/ui_about_dialog.h"
#include "ui/ui_waiting_dialog.h"
#include "ui/waiting_thread.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMovie>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <ctime>

namespace {

const QString acknowledgment = QStringLiteral("Open-source acknowledgment");

QString read_file(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// A desktop's viewer that notes what it was to show.
class fake_viewer_t
{
public:
    fake_viewer_t() : folder(QDir::tempPath() + QStringLiteral(u"/viewer 查看 XXXXXX"))
    {
        QFile script(folder.filePath(QStringLiteral("xdg-open")));
        if (!script.open(QIODevice::WriteOnly))
            qFatal("the viewer cannot be written");
        script.write("#!/bin/sh\nprintf '%s\\n' \"$@\" >>\"${0%/*}/shown\"\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QStringList shown() const
    {
        return read_file(folder.filePath(QStringLiteral("shown")))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QTemporaryDir folder;
};

} // namespace

class test_about_dialog : public QObject
{
    Q_OBJECT

private slots:
    void box_is_wrong_or_its_logo_takes_clicks();
    void viewer_fails_loudly_or_starts_through_many_processes();
    void acknowledgment_lacks_a_component_or_a_licence();
    void waiting_stands_still_or_ends();

private:
    ui_about_dialog_t *open_about();

    window_driver_t driver;
    fake_viewer_t viewer;
};

ui_about_dialog_t *test_about_dialog::open_about()
{
    driver.choose("Help", "About");
    return qobject_cast<ui_about_dialog_t *>(QApplication::activeModalWidget());
}

void test_about_dialog::box_is_wrong_or_its_logo_takes_clicks()
{
    ui_about_dialog_t *const box = open_about();
    QCOMPARE(box->size(), QSize(280, 200));
    QCOMPARE(box->windowTitle(), QString("About"));
    constexpr auto refused = Qt::WindowContextHelpButtonHint | Qt::WindowMinMaxButtonsHint;
    QVERIFY((box->windowFlags() & refused) == 0);
    const auto *const logo = box->findChild<QAbstractButton *>("aboutLogo");
    QVERIFY(logo->testAttribute(Qt::WA_TransparentForMouseEvents));
    QStringList labels;
    for (const QLabel *const label : box->findChildren<QLabel *>())
        labels.append(label->text());
    QCOMPARE(labels, QStringList({"\tVersion: V1.2.3", "\tBuild: 2024/6/12"}));
    QVERIFY(QTest::qWaitForWindowActive(box));
    QCOMPARE(press_return_everywhere(*box), QStringList{acknowledgment});
    QVERIFY(box->findChild<QProcess *>() == nullptr);
    QTest::keyClick(box, Qt::Key_Escape);
    QVERIFY(!box->isVisible());
}

void test_about_dialog::viewer_fails_loudly_or_starts_through_many_processes()
{
    QList<ui_about_dialog_t *> boxes;
    for (int count = 0; count < 3; ++count) {
        boxes.append(open_about());
        QCOMPARE(boxes.last()->windowModality(), Qt::ApplicationModal);
        QCOMPARE(boxes.count(boxes.last()), 1);
    }
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nowhere");
    QVERIFY(perform(*boxes[2], acknowledgment));
    const auto *const process = boxes[2]->findChild<QProcess *>();
    QTRY_COMPARE(process->error(), QProcess::FailedToStart);
    boxes[2]->close();

    qputenv("PATH", viewer.folder.path().toLocal8Bit() + ':' + path);
    for (const int starts : {1, 2, 3}) {
        QVERIFY(perform(*boxes[starts % 2], acknowledgment));
        QTRY_COMPARE(viewer.shown().size(), starts);
        QTRY_COMPARE(process->state(), QProcess::NotRunning);
    }
    QVERIFY(boxes[0]->isVisible() && boxes[1]->isVisible());
    for (const int other : {0, 1})
        QVERIFY(boxes[other]->findChild<QProcess *>() == nullptr);
    boxes[0]->close();
    boxes[1]->close();
    QCOMPARE(driver.take_boxes(), QStringList());
}

/// Reads the document that the viewer was given.
void test_about_dialog::acknowledgment_lacks_a_component_or_a_licence()
{
    const QString html = read_file(viewer.shown().value(0));
    const QString shipped =
        html.section("<h2 id=\"inside-qt\">", 0, 0).section("<h2 id=\"shipped\">", 1).remove(' ');
    QVERIFY(shipped.contains("CorvaneSansCN") && shipped.contains("nlohmann-json"));

    // What is loaded of Qt here, beside the libraries of the test and of its display.
    QRegularExpression pattern("libQt5(?!Test|DBus|EglFS|XcbQpa)(\\w+)\\.so");
    auto libraries = pattern.globalMatch(read_file("/proc/self/maps"));
    QVERIFY(libraries.hasNext());
    while (libraries.hasNext()) {
        const QString library = "Qt" + libraries.next().captured(1);
        QVERIFY2(shipped.contains(library), qPrintable(library));
    }

    QStringList licences{"GPL-3.0-only"};
    pattern.setPattern("Licence: <a href=\"#([^\"]+)\"");
    for (auto links = pattern.globalMatch(html); links.hasNext();)
        licences.append(links.next().captured(1));
    QVERIFY(licences.contains("LGPL-3.0-only"));
    for (const QString &licence : qAsConst(licences)) {
        const QString text =
            html.section(QString("<h3 id=\"%1\">").arg(licence), 1).section("</pre>", 0, 0);
        QVERIFY2(text.size() > 500, qPrintable(licence));
    }
}

void test_about_dialog::waiting_stands_still_or_ends()
{
    waiting_thread thread;
    QScopedPointer<ui_waiting_dialog_t> dialog;
    for (QWidget *const widget : QApplication::topLevelWidgets())
        if (auto *const shown = qobject_cast<ui_waiting_dialog_t *>(widget))
            dialog.reset(shown);
    QVERIFY(dialog && dialog->isVisible() && !dialog->isModal());
    QCOMPARE(dialog->findChild<QLabel *>()->movie()->state(), QMovie::Running);

    const std::clock_t before = std::clock();
    thread.start();
    QVERIFY(!thread.wait(100));
    QVERIFY2(std::clock() - before < CLOCKS_PER_SEC / 20, "it burns a core");
    thread.terminate();
    QVERIFY(thread.wait());
}

CORVANE_GUI_TEST_MAIN(test_about_dialog)
#include "test_about_dialog.moc"
