// SPDX-License-Identifier: MIT
#include "tests/support/package_folder.h"

#include "upgrade/header_cipher.h"
#include "upgrade/package_format.h"
#include "upgrade/upgrade_file.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

namespace {

QByteArray number(quint32 value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

} // namespace

QByteArray package_header(qint32 product_id, quint32 end_offset)
{
    QByteArray header(112, '\0');
    header.replace(4, 4, number(end_offset));
    header.replace(12, 4, number(static_cast<quint32>(product_id)));
    header.replace(58, 8, QByteArray("ISP1763", 8));
    auto *const bytes = reinterpret_cast<std::uint8_t *>(header.data());
    des_crypt(bytes, bytes, 112, header_key.data(), header_key.size(), false);
    return header;
}

QByteArray segment_record(quint32 type, quint32 offset, quint32 length)
{
    return number(type) + number(offset) + number(length);
}

QByteArray make_package(qint32 product_id, const QList<QPair<quint32, QByteArray>> &segments)
{
    QByteArray chain;
    for (const auto &[type, payload] : segments) {
        const auto offset = static_cast<quint32>(112 + chain.size() + 12);
        chain += segment_record(type, offset, static_cast<quint32>(payload.size())) + payload;
    }
    return package_header(product_id, static_cast<quint32>(112 + chain.size())) + chain;
}

QByteArray pattern(int length)
{
    QByteArray bytes;
    for (int place = 0; place < length; ++place)
        bytes.append(static_cast<char>(place * 7 + place / 256));
    return bytes;
}

package_folder_t::package_folder_t()
    : folder(QDir::tempPath() + QStringLiteral("/corvane 升级 XXXXXX"))
{
    if (!folder.isValid())
        qFatal("no temporary folder: %s", qPrintable(folder.errorString()));
}

QString package_folder_t::path(const QString &name) const
{
    return folder.filePath(name);
}

QString package_folder_t::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write: %s", qPrintable(file.errorString()));
    return file.fileName();
}

std::string package_folder_t::write_package(const QByteArray &bytes) const
{
    return to_package_name(write(QStringLiteral("固件.ADS"), bytes));
}
