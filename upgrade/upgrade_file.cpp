// SPDX-License-Identifier: MIT
#include "upgrade/upgrade_file.h"

#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QTextCodec>

namespace {

struct upgrade_file_t
{
    QMutex mutex;
    std::string name;
};

upgrade_file_t upgrade_file;

QTextCodec *package_name_codec()
{
    return QTextCodec::codecForName("GB2312");
}

} // namespace

/// A character that GB2312 lacks is replaced without a word; only the way back shows it.
std::string to_package_name(const QString &path)
{
    const QTextCodec *const codec = package_name_codec();
    if (codec == nullptr)
        return {};
    const QByteArray name = codec->fromUnicode(path);
    if (codec->toUnicode(name) != path)
        return {};
    return name.constData();
}

std::filesystem::path to_path(const QString &path)
{
#ifdef Q_OS_WIN
    return path.toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}

std::filesystem::path to_file_path(const std::string &package_name)
{
    const QTextCodec *const codec = package_name_codec();
    if (codec == nullptr)
        return {};
    return to_path(codec->toUnicode(package_name.data(), static_cast<int>(package_name.size())));
}

void set_upgrade_file_name(const std::string &package_name)
{
    const QMutexLocker locker(&upgrade_file.mutex);
    upgrade_file.name = package_name;
}

std::string upgrade_file_name()
{
    const QMutexLocker locker(&upgrade_file.mutex);
    return upgrade_file.name;
}
