// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QTemporaryDir>

#include <string>

/// An enciphered package header.
QByteArray package_header(qint32 product_id, quint32 end_offset);
QByteArray segment_record(quint32 type, quint32 offset, quint32 length);
/// A correct package of segments with a type and a payload.
QByteArray make_package(qint32 product_id, const QList<QPair<quint32, QByteArray>> &segments);
/// So many bytes, no two neighbours alike.
QByteArray pattern(int length);

/// A folder for packages; its path has a blank and Chinese characters.
class package_folder_t
{
public:
    package_folder_t();

    /// The path of a file in the folder.
    QString path(const QString &name) const;
    /// Writes a file into the folder and returns its path.
    QString write(const QString &name, const QByteArray &bytes) const;
    /// Writes a package into the folder and returns its narrow name.
    std::string write_package(const QByteArray &bytes) const;

private:
    QTemporaryDir folder;
};
