// SPDX-License-Identifier: MIT
#include "upgrade/upgrade_file.h"

#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QString>

namespace {

struct upgrade_file_t
{
    QMutex mutex;
    std::string name;
};

upgrade_file_t upgrade_file;

} // namespace

/// Half a surrogate pair, which UTF-8 cannot hold, would become a character of its own.
std::string to_package_name(const QString &path)
{
    const std::string text = path.toStdString();
    return QString::fromStdString(text) == path ? to_package_name(text) : std::string();
}

std::filesystem::path to_file_path(const std::string &package_name)
{
    const QString path = QString::fromStdString(to_package_path(package_name));
#ifdef Q_OS_WIN
    return path.toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
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
