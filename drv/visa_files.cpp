// SPDX-License-Identifier: MIT
#include "drv/visa_files.h"

#include <QFile>
#include <QFileInfo>
#include <QLatin1String>

#ifdef Q_OS_LINUX
#include <dlfcn.h>

#include <cstddef>
#include <memory>
#endif

namespace {

#ifndef Q_OS_WIN

/// The names under which VISA is installed elsewhere than on Windows, and the one there first.
constexpr const char *library_names[] = {
    standard_visa_file, "libvisa.so",     "libvisa.so.0", "libvisa.so.7",
    "librsvisa.so",     "libktvisa32.so", "libiovisa.so",
};

/// Where vendors put theirs apart from the loader's path.
constexpr const char *vendor_files[] = {
    "/opt/keysight/iolibs/libktvisa32.so",
    "/usr/lib/librsvisa.so",
};

/// The folders that the loader itself says it searches, in its order: the user's, then the
/// system's. It does not name those of its cache, of which a local installation uses one.
QStringList loader_folders()
{
    QStringList folders;
#ifdef Q_OS_LINUX
    void *const self = dlopen(nullptr, RTLD_LAZY);
    Dl_serinfo size{};
    if (dlinfo(self, RTLD_DI_SERINFOSIZE, &size) == 0) {
        const auto bytes = std::make_unique<std::byte[]>(size.dls_size);
        auto *const path = reinterpret_cast<Dl_serinfo *>(bytes.get());
        if (dlinfo(self, RTLD_DI_SERINFOSIZE, path) == 0 &&
            dlinfo(self, RTLD_DI_SERINFO, path) == 0) {
            const Dl_serpath *const first = path->dls_serpath;
            for (unsigned index = 0; index < path->dls_cnt; ++index)
                folders.append(QFile::decodeName(first[index].dls_name));
        }
    }
    dlclose(self);
#endif
    return folders << QStringLiteral("/usr/local/lib");
}

/// A name, and its file in each of the folders that has it.
void append_library(QStringList &files, const QString &name, const QStringList &folders)
{
    files.append(name);
    // The loader stops at the first file of a name, whatever that is worth.
    for (const QString &folder : folders) {
        const QString path = folder + QLatin1Char('/') + name;
        if (QFile::exists(path))
            files.append(path);
    }
}

#endif

#ifdef Q_OS_LINUX

/// Corvane's own, for which a vendor's is never passed over.
constexpr const char *own_name = "libcorvane-visa.so";

/// Where it is installed, seen from the program's folder: "/../lib/corvane", with the machine's
/// name between on Debian.
constexpr const char *own_folder = "/" CORVANE_OWN_VISA_FOLDER;

/// Asked of the system: Qt does not know it before main.
QString program_folder()
{
    return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
}

#endif

} // namespace

QStringList visa_files()
{
    QStringList files;
#ifdef Q_OS_WIN
    files.append(QLatin1String(standard_visa_file));
#else
    const QStringList folders = loader_folders();
    for (const char *const library_name : library_names)
        append_library(files, QLatin1String(library_name), folders);
    for (const char *const file : vendor_files)
        files.append(QLatin1String(file));
#endif
#ifdef Q_OS_LINUX
    append_library(files, QLatin1String(own_name),
                   QStringList(folders) << program_folder() + QLatin1String(own_folder));
#endif
    return files;
}
