// SPDX-License-Identifier: MIT
#include "drv/drv_device.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include <cstring>

/// Looks for a VISA library among files of each kind. The search is over before `main` begins, so
/// that each one happens in a process of its own: this program again, told to connect.
class test_visa_search : public QObject
{
    Q_OBJECT

private slots:
    void library_is_missed_or_a_useless_one_taken_data();
    void library_is_missed_or_a_useless_one_taken();
};

void test_visa_search::library_is_missed_or_a_useless_one_taken_data()
{
    // The files of the folders on the loader's path, which "|" separates.
    QTest::addColumn<bool>("found");
    QTest::addColumn<QByteArray>("said"); // among what is told to a user who asks
    for (const char *const name :
         {"visa32.dll", "libvisa.so", "libvisa.so.0", "libvisa.so.7", "librsvisa.so",
          "libktvisa32.so", "libiovisa.so", "libcorvane-visa.so"})
        QTest::addRow("%s=complete", name) << true << name + QByteArray(": used\n");
    const char *const same_name[] = {
        "libvisa.so=lacks viWrite, viRead|libvisa.so=complete",
        "libvisa.so=text|libvisa.so=complete",
        "libvisa.so=lacks viWrite, viRead|libvisa.so=text|libvisa.so=complete"};
    for (const char *const folders : same_name)
        QTest::newRow(folders) << true << QByteArray("/libvisa.so: used\n");
    QTest::newRow("visa32.dll=text|visa32.dll=complete")
        << true << QByteArray("/visa32.dll: used\n");
    QTest::newRow("visa32.dll=lacks viWrite, viRead|libvisa.so=complete")
        << true << QByteArray("visa32.dll: lacks viWrite, viRead\n");
    QTest::newRow("libvisa.so=lacks viWrite, viRead|libktvisa32.so=complete")
        << true << QByteArray("libvisa.so: lacks viWrite, viRead\n");
    QTest::newRow("libvisa.so=lacks viWrite, viRead|libiovisa.so=text")
        << false << QByteArray("/libiovisa.so: file too short");
    QTest::newRow("libother.so=complete")
        << false << QByteArray("libcorvane-visa.so: cannot open shared object file");
    QTest::newRow("libvisa.so=opens at the right terms")
        << true << QByteArray("viOpenDefaultRM: 0x00000000\n");
    QTest::newRow("libcorvane-visa.so=complete|libvisa.so=complete")
        << true << QByteArray("libvisa.so: used\n");
    QTest::newRow("lib/corvane/libcorvane-visa.so=complete")
        << true << QByteArray("/bin/../lib/corvane/libcorvane-visa.so: used\n");
}

void test_visa_search::library_is_missed_or_a_useless_one_taken()
{
    static const QHash<QString, QString> libraries{
        {"complete", CORVANE_SIM_VISA},
        {"lacks viWrite, viRead", CORVANE_LACKING_VISA},
        {"opens at the right terms", CORVANE_OPENING_VISA}};
    QFETCH(bool, found);
    QFETCH(QByteArray, said);
    const QTemporaryDir root(QDir::tempPath() + QStringLiteral("/库 XXXXXX"));
    QStringList path;
    for (const QString &file : QString(QTest::currentDataTag()).split('|')) {
        path.append(root.filePath(QString::number(path.size())));
        QString name = file.section('=', 0, 0);
        name = (name.contains('/') ? root.path() : path.last()) + '/' + name;
        QVERIFY(QDir().mkpath(QFileInfo(name).path()));
        const QString kind = file.section('=', 1);
        if (kind != "text") {
            QVERIFY(QFile::link(libraries.value(kind), name));
            continue;
        }
        QFile text(name);
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("not a library\n") > 0);
    }
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_LIBRARY_PATH", path.join(':'));
    environment.insert("QT_LOGGING_RULES", "corvane.visa.debug=true");
    environment.insert("LC_ALL", "C.UTF-8");
    child.setProcessEnvironment(environment);
    // As it is installed.
    const QString program = root.filePath("bin/program");
    QVERIFY(QDir(root.path()).mkdir("bin"));
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
    child.start(program, {"connect"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), found ? 0 : 1);
    const QByteArray told = child.readAllStandardError();
    QVERIFY2(told.contains(said), told);
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 2 && std::strcmp(argv[1], "connect") == 0)
        return drv_device_t::instance()->lan_connect("127.0.0.1") ? 0 : 1;
    test_visa_search test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_visa_search.moc"
