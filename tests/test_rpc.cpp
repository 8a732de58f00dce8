// SPDX-License-Identifier: MIT
#include "rpc/record_marking.h"

#include <QByteArray>
#include <QtTest/QTest>

using namespace rpc;

namespace {

std::string from_hex(const char *digits)
{
    return QByteArray::fromHex(digits).toStdString();
}

QByteArray hex(std::string_view bytes)
{
    return QByteArray(bytes.data(), static_cast<int>(bytes.size())).toHex();
}

/// The records of at most 8 bytes that come in such pieces; "!" for a stream of no use.
QByteArray records_in(std::string_view stream, std::size_t piece)
{
    record_reader_t reader(8);
    QByteArray found;
    for (std::size_t place = 0; place < stream.size(); place += piece) {
        std::string_view rest = stream.substr(place, piece);
        while (!rest.empty()) {
            const auto state = reader.feed(rest);
            if (state == record_reader_t::state_t::too_long)
                return found + "!";
            if (state == record_reader_t::state_t::complete)
                found += hex(reader.record()) + " ";
        }
    }
    return found;
}

} // namespace

class test_rpc : public QObject
{
    Q_OBJECT

private slots:
    void records_are_cut_wrongly();
};

void test_rpc::records_are_cut_wrongly()
{
    const char *const rows[][2] = {{"80000001 61 80000002 6263", "61 6263 "},
                                   {"80000000 80000001 61", " 61 "},
                                   {"00000002 6162 00000000 80000001 63 80000001 64", "616263 64 "},
                                   {"00000001 61 80000000", "61 "},
                                   {"80000003 6162", ""},
                                   {"80000008 6162636465666768", "6162636465666768 "},
                                   {"80000009 61", "!"},
                                   {"80000001 61 ffffffff 61", "61 !"},
                                   {"00000005 6162636465 80000004 61", "!"}};
    for (const auto &[digits, records] : rows) {
        const std::string stream = from_hex(digits);
        for (std::size_t piece = 1; piece <= stream.size(); ++piece)
            QCOMPARE(records_in(stream, piece), QByteArray(records));
    }
    std::string written(record_header_room);
    written += "ab";
    end_record(written, 0);
    QCOMPARE(hex(written), "800000026162");
}

QTEST_GUILESS_MAIN(test_rpc)
#include "test_rpc.moc"
