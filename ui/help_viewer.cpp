// SPDX-License-Identifier: MIT
#include "ui/help_viewer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN

/// The compiled help file, relative to the working directory; in the browser where only the
/// document from which it is compiled is there.
viewer_command_t acknowledgment_viewer()
{
    const QString compiled = QStringLiteral("help/open-source_software_acknowledgment.chm");
    const QFileInfo document(QStringLiteral("help/open-source_software_acknowledgment.html"));
    if (!QFile::exists(compiled) && document.exists())
        return {QStringLiteral("explorer.exe"),
                {QDir::toNativeSeparators(document.absoluteFilePath())}};
    return {QStringLiteral("hh.exe"), {compiled}};
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
