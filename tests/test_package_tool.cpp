// SPDX-License-Identifier: MIT
#include "tests/support/package_folder.h"
#include "upgrade/upgrade_file.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest/QTest>

#include <filesystem>
#include <utility>

namespace {

#ifdef Q_OS_WIN
constexpr bool reads_in_text_mode = true;
#else
constexpr bool reads_in_text_mode = false;
#endif

QByteArray sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

} // namespace

class test_package_tool : public QObject
{
    Q_OBJECT

private slots:
    void created_package_differs_from_its_manifest();
    void fault_of_a_package_goes_unreported();
    void refusal_gives_no_reason_or_the_wrong_status();
    void program_and_tool_differ_on_a_name();

private:
    /// Runs corvane-package; -1 when it crashes or hangs.
    int run(const QStringList &arguments);

    package_folder_t folder;
    /// Where the tool runs.
    QString directory;
    /// Where its output goes; into `output` when this is empty.
    QString output_file;
    QByteArray output;
};

int test_package_tool::run(const QStringList &arguments)
{
    // Long enough for a busy machine, far too short for what a hostile package can ask for.
    constexpr int patience_ms = 20'000;
    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.setWorkingDirectory(directory);
    if (!output_file.isEmpty())
        tool.setStandardOutputFile(output_file);
    tool.start(QStringLiteral(CORVANE_PACKAGE_TOOL), arguments);
    const bool ended = tool.waitForFinished(patience_ms);
    output = tool.readAll();
    if (reads_in_text_mode) // and writes so
        output.replace("\r\n", "\n");
    return ended && tool.exitStatus() == QProcess::NormalExit ? tool.exitCode() : -1;
}

// With zeros in the bytes that nobody reads, the enciphered header of product 30 would have a
// Ctrl-Z, which ends the file on Windows; worked out as the numbers in test_header_cipher.
void test_package_tool::created_package_differs_from_its_manifest()
{
    const QByteArray image = pattern(2049);
    folder.write(QStringLiteral("引导.bin"), image);
    folder.write(QStringLiteral("name"), "TMX\n");
    const QString manifest = folder.write(QStringLiteral("manifest.json"), R"({"product_id": 30,
        "segments": [{"type": "boot", "file": "引导.bin"}, {"type": 5, "file": "name"}]})");
    const QString package = folder.path(QStringLiteral("升级 1.ADS"));
    QCOMPARE(run({"create", manifest, package}), 0);
    QCOMPARE(output, QByteArray());
#ifndef Q_OS_WIN // whose links and permissions are others, and which has no shell to set limits
    // A package that is replaced keeps its permissions and the links to it.
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner;
    const QString link = folder.path(QStringLiteral("link.ADS"));
    QVERIFY(QFile::link(package, link) && QFile::setPermissions(package, owner));
    QCOMPARE(run({"create", manifest, link}), 0);
    QVERIFY(QFileInfo(link).isSymLink() && !QFile::permissions(package).testFlag(QFile::ReadGroup));
    // Where there is no room for another one it stays, and nothing is left beside it.
    const QDir place(folder.path({}), {}, QDir::Unsorted, QDir::AllEntries | QDir::Hidden);
    const QString small = folder.write(QStringLiteral("small.json"), R"({"product_id": 30,
        "segments": [{"type": 5, "file": "name"}]})");
    const QStringList before = place.entryList();
    QCOMPARE(QProcess::execute("sh", {"-c", "trap '' XFSZ; ulimit -f 0; \"$@\"", "sh",
                                      CORVANE_PACKAGE_TOOL, "create", small, package}),
             2);
    place.refresh();
    QCOMPARE(place.entryList(), before);
#endif
#ifndef Q_OS_WIN // which has no device that is always full
    output_file = QStringLiteral("/dev/full");
    QCOMPARE(run({"inspect", package}), 2);
    output_file.clear();
#endif

    QFile file(package);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray header = file.read(112);
    QVERIFY(!header.contains('\x1A') && !header.contains('\r'));
    QCOMPARE(file.readAll(),
             segment_record(3, 124, 2049) + image + segment_record(5, 2185, 4) + "TMX\n");
    QCOMPARE(run({"inspect", "--json", package}), 0);
    const QByteArray json = R"({"file_bytes": 2189, "magic": true, "product_id": 30,
        "end_offset": 2189, "findings": [], "segments": [
        {"type": 3, "name": "boot", "record": 112, "offset": 124, "length": 2049,
         "sha256": ")" + sha256(image) +
                            R"("},
        {"type": 5, "name": "product", "record": 2173, "offset": 2185, "length": 4,
         "sha256": ")" + sha256("TMX\n") +
                            R"("}]})";
    QCOMPARE(QJsonDocument::fromJson(output), QJsonDocument::fromJson(json));
    QCOMPARE(run({"inspect", package}), 0);
    QCOMPARE(output,
             "file bytes: 2189\nmagic: right\nproduct id: 30\nend offset: 2189\nsegments: 2\n"
             "segment: type 3 (boot), record 112, offset 124, length 2049, sha256 " +
                 sha256(image) +
                 "\nsegment: type 5 (product), record 2173, offset 2185, length 4, sha256 " +
                 sha256("TMX\n") + "\n");
}

void test_package_tool::fault_of_a_package_goes_unreported()
{
    const auto whole = [](quint32 end, const QByteArray &chain) {
        return package_header(44, end) + chain;
    };
    QByteArray bomb = segment_record(3, 124, 3'000'000 - 124) + QByteArray(3'000'000 - 124, 'x');
    for (quint32 record = 3'000'000; record < 3'100'000; record += 12)
        bomb += segment_record(3, 0, record + 12);

    const struct
    {
        QByteArray package;
        QStringList kinds;
        /// Where header and records are read so: a Ctrl-Z ends the file, a CR before an LF is gone.
        QStringList kinds_in_text_mode = {};
    } rows[] = {
        {QByteArray(300, 'x'), {"header"}},
        {package_header(44, 112).left(111), {"header"}},
        {make_package(44, {{3, "boot"}}) + "x", {"trailing: 1 bytes"}},
        {make_package(44, {{2, "a"}}), {"type"}},
        {make_package(30, {{3, "boot"}}), {"text-mode: the header"}, {"header"}},
        {make_package(44, {{3, QByteArray(0x0A0D, 'b')}}),
         {"text-mode: record 1"},
         {"payload", "text-mode: record 1", "chain: the file has no"}},
        {whole(124, segment_record(3, 112, 12)), {"overlap: payload 1 overlaps record 1"}},
        {make_package(44, {{8, QByteArray(81, 'a')}}), {"length"}},
        {make_package(44, {{2, {}}, {8, {}}, {3, {}}}), {"empty"}},
        {whole(124, segment_record(3, 112, 0)), {"empty", "chain: the chain returns"}},
        {whole(112, segment_record(3, 124, 4) + "boot"), {"trailing", "chain: the file has no"}},
        {make_package(44, {{3, "boot"}}).chopped(1), {"end", "payload"}},
        {make_package(44, {{3, QByteArray(0x1A, 'b')}}),
         {"text-mode"},
         {"empty", "text-mode", "type", "payload", "chain"}},
        {whole(0, bomb),
         {"trailing", "text-mode", "chain", "overlap"},
         {"trailing", "empty", "text-mode", "overlap"}},
    };
    for (const auto &[package, kinds, kinds_in_text_mode] : rows) {
        QCOMPARE(run({"inspect", "--json", folder.write(QStringLiteral("a.ADS"), package)}), 1);
        QStringList left =
            reads_in_text_mode && !kinds_in_text_mode.isEmpty() ? kinds_in_text_mode : kinds;
        QString last;
        for (const auto value : QJsonDocument::fromJson(output).object()["findings"].toArray()) {
            const QJsonObject finding = value.toObject();
            const QString kind = finding["kind"].toString();
            const QString text = kind + ": " + finding["text"].toString();
            if (std::exchange(last, kind) != kind)
                QVERIFY2(!left.isEmpty() && text.startsWith(left.takeFirst()), qPrintable(text));
        }
        QCOMPARE(left, QStringList());
    }
}

void test_package_tool::refusal_gives_no_reason_or_the_wrong_status()
{
    const QString package = folder.write(QStringLiteral("a.ADS"), make_package(-7, {{3, "boot"}}));
    const QString none = folder.path(QStringLiteral("none.ADS"));
    const QString manifest = folder.path(QStringLiteral("bad.json"));
    const QString odd =
        folder.write(QStringLiteral("odd.ADS"), make_package(44, {{2, "ab"}}).chopped(1));
    const auto listing = [](const QByteArray &segments, const QByteArray &id = "44") {
        return R"({"product_id": )" + id + R"(, "segments": [)" + segments + "]}";
    };
    const QByteArray boot = R"({"type": "boot", "file": "boot"})";
    const QByteArray empty = R"({"type": "boot", "file": "empty"})";
    const QStringList create{"create", manifest, none};
    const struct
    {
        QByteArray manifest;
        QStringList arguments;
        int status;
        QByteArray text;
    } rows[] = {
        {"", {"check", package, "--accept", "0,-7,9,0"}, 0, "accepted: product id -7"},
        {"", {"check", package, "--accept", "-7,-6,9,0"}, 1, "accepts -6 to 9"},
        {"", {"check", package, "--accept", " -7 ,9,9,1x,5"}, 0, "accepts only -7"},
        {"", {"check", package, "--accept", "-7,"}, 1, "accepts 0 to 0"},
        {"", {"check", odd, "--accept", "44"}, 1, "the instrument accepts 1 to 0"},
        {"", {"check", folder.path("boot"), "--accept", "44"}, 1, "this is no firmware package"},
        {"", {}, 2, "A subcommand is required"},
        {"", {"inspect", odd}, 1, "(unknown), record 112, offset 124, length 2, sha256 -\n"},
        {"", {"inspect", "--json", odd}, 1, "\"sha256\": null"},
        {"", {"inspect", none}, 2, "none.ADS: cannot be read: No such file"},
        {"", {"inspect", folder.path({})}, 2, "cannot be read: not a regular file"},
        {"", {"inspect", "foreign.ADS"}, 2, "GB2312"},
        {listing(empty), {"create", manifest, package + "2"}, 0, "2: warning: segment 1 is empty"},
        {listing(boot), {"create", manifest, "펌웨어.ADS"}, 2, "GB2312"},
        {listing(boot), {"create", manifest, none + "/a"}, 2, "none.ADS/a: cannot be written"},
        {listing(boot), {"create", manifest, folder.path("link")}, 2, "it is the manifest"},
#ifndef Q_OS_WIN // where such a link is a shortcut, an ordinary file
        {listing(boot), {"create", manifest, folder.path("gone")}, 2, "not a regular file"},
#endif
        {listing(boot), {"create", manifest, folder.path("./boot")}, 2, "one of the payloads"},
        {listing(boot, "2147483648"), create, 2, "\"product_id\" is not an integer of 32 bits"},
        {listing(boot, "44, \"id\": 1"), create, 2, "\"id\" is not known here"},
        {listing(R"({"type": 3, "file": "no"})"), create, 2, "segment 1: "},
        {listing(R"({"type": 3, "file": "boot", "type": 1})"), create, 2, "twice"},
        {listing(R"({"type": 3, "file": "boot", "x": 1})"), create, 2, "\"x\" is not known here"},
        {listing(R"({"type": 2, "file": "boot"})"), create, 2, "no segment type 2"},
        {listing(""), create, 2, "\"segments\" is not a list of at least one"},
        {listing(R"({"type": "pid", "file": "long"})"), create, 2, "long is too long"},
        {listing(R"({"type": 3, "file": "huge"})"), create, 2, "huge is too long"},
    };
    folder.write(QStringLiteral("empty"), "");
    QFile::link(folder.path(QStringLiteral("nowhere")), folder.path(QStringLiteral("gone")));
    folder.write(QStringLiteral("long"), QByteArray(81, 'x'));
    folder.write(QStringLiteral("boot"), "boot");
    QVERIFY(QFile::resize(folder.write(QStringLiteral("huge"), ""), 1LL << 32));
    folder.write(QStringLiteral("bad.json"), {});
    const QString link = folder.path(QStringLiteral("link"));
#ifdef Q_OS_WIN // where a symbolic link takes an administrator
    std::filesystem::create_hard_link(std::filesystem::u8path(manifest.toStdString()),
                                      std::filesystem::u8path(link.toStdString()));
#else
    QVERIFY(QFile::link(manifest, link));
#endif
    // Its absolute path counts, of which GB2312 lacks a folder's name.
    const QString korean = folder.path(QStringLiteral("펌웨어"));
    QVERIFY(QDir().mkdir(korean) && QFile::copy(package, korean + "/foreign.ADS"));
    directory = korean;
    for (const auto &row : rows) {
        folder.write(QStringLiteral("bad.json"), row.manifest);
        QVERIFY2(run(row.arguments) == row.status && output.contains(row.text), output);
        QVERIFY(!QFile::exists(none));
        QCOMPARE(QDir(korean).entryList(QDir::Files), QStringList("foreign.ADS"));
        QCOMPARE(QFile(manifest).size(), row.manifest.size());
        QCOMPARE(QFile(folder.path("boot")).size(), 4);
    }
}

void test_package_tool::program_and_tool_differ_on_a_name()
{
    const QPair<QString, bool> rows[] = {
        {QStringLiteral("a.ADS"), true},      {QStringLiteral("固 件.ADS"), true},
        {QStringLiteral("体體€.ADS"), true},
#ifndef Q_OS_WIN // where no name holds it
        {QStringLiteral("体體€?.ADS"), true},
#endif
        {QStringLiteral("é.ADS"), true},      {QStringLiteral("펌.ADS"), false},
        {QStringLiteral("😀.ADS"), false},
    };
    for (const auto &[name, is_held] : rows) {
        const QString package = folder.write(name, make_package(44, {{3, "boot"}}));
        QCOMPARE(!to_package_name(package).empty(), is_held);
        QCOMPARE(run({"check", package, "--accept", "44,0,0,1"}), is_held ? 0 : 2);
    }
}

QTEST_GUILESS_MAIN(test_package_tool)
#include "test_package_tool.moc"
