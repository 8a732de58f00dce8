// SPDX-License-Identifier: MIT
#include "tests/support/package_folder.h"
#include "upgrade/accepted_id.h"
#include "upgrade/package_reader.h"
#include "upgrade/upgrade_file.h"

#include <QDir>
#include <QtTest/QTest>

class test_package_reader : public QObject
{
    Q_OBJECT

private slots:
    void header_is_misread_or_not_checked();
    void path_changes_on_its_way_to_the_reader();

private:
    package_folder_t folder;
};

// Enciphered by the same Python as in test_header_cipher: end offset 0x1234, product identifier 44,
// the magic, and in every other byte its own place.
void test_package_reader::header_is_misread_or_not_checked()
{
    const QByteArray file = QByteArray::fromHex(
        "c92219afbedf69fe9e15275252e92f9da01c47befc31284e4e6c117f12959d91781955adefe959156a5b6723"
        "ee948a8c9cb1610842dc348cdf54faa30565c28532c67ad9b3b2a8c9737e94b0f216cfc68c4b092288cdaf24"
        "4b7af0d1b76a382ada681b6ad2ccece8ff65036d5ac37418");
    set_accepted_ids({44, 0, 0, 1});
    upgrade_header_t header{};
    QVERIFY(read_upgrade_header(to_file_path(folder.write_package(file)), header));
    QCOMPARE(header_end_offset(header), 0x1234U);
    QCOMPARE(header_product_id(header), 44);

    for (const std::size_t magic : {58U, 64U, 65U}) {
        upgrade_header_t damaged = header;
        damaged[magic] ^= 0x80;
        QVERIFY(!check_upgrade_header(damaged));
    }
    for (const QByteArray &refused : {QByteArray(), file.left(111), package_header(45, 112)})
        QVERIFY(!read_upgrade_header(to_file_path(folder.write_package(refused)), header));
    QVERIFY(!read_upgrade_header(QDir::tempPath().toStdString(), header));
}

void test_package_reader::path_changes_on_its_way_to_the_reader()
{
    const QPair<QString, QByteArray> rows[] = {
        {QStringLiteral("/固 件/a.ADS"), "/\xb9\xcc \xbc\xfe/a.ADS"},
        {QStringLiteral("/what?.ADS"), "/what?.ADS"},
        {QStringLiteral("/體€.ADS"), "/\xf3\x77\x80.ADS"},
        {QString(QChar(0xD800)), ""},
        {QStringLiteral("/펌웨어.ADS"), ""},
        {QStringLiteral("/😀.ADS"), ""},
        {QStringLiteral("/a\0b"), "/a"},
    };
    for (const auto &[path, name] : rows) {
        QCOMPARE(QByteArray::fromStdString(to_package_name(path)), name);
        const QString back = QString::fromStdString(to_file_path(name.toStdString()).string());
        QCOMPARE(back, name.isEmpty() ? QString() : path.section(QChar(u'\0'), 0, 0));
    }
}

QTEST_GUILESS_MAIN(test_package_reader)
#include "test_package_reader.moc"
