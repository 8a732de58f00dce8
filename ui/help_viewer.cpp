// SPDX-License-Identifier: MIT
#include "ui/help_viewer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#ifdef Q_OS_WIN

/// The compiled help file, relative to the working directory.
viewer_command_t acknowledgment_viewer()
{
    return {QStringLiteral("hh.exe"),
            {QStringLiteral("help/open-source_software_acknowledgment.chm")}};
}

#else

namespace {

/// The installed document, or the one that the build put beside the program.
QString acknowledgment_document()
{
    const QDir program_folder(QCoreApplication::applicationDirPath());
    const QString name = QStringLiteral("open-source_software_acknowledgment.html");
    const QString installed =
        QDir::cleanPath(program_folder.filePath(QStringLiteral("../share/doc/corvane/") + name));
    return QFile::exists(installed) ? installed
                                    : program_folder.filePath(QStringLiteral("help/") + name);
}

} // namespace

viewer_command_t acknowledgment_viewer()
{
    return {QStringLiteral("xdg-open"), {acknowledgment_document()}};
}

#endif
