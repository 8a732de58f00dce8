// SPDX-License-Identifier: MIT
#include "tools/readable_file.h"

#include <QFile>
#include <QFileInfo>

#include <stdexcept>

void open_to_read(QFile &file)
{
    const QFileInfo info(file.fileName());
    const bool is_other = info.exists() && !info.isFile();
    if (!is_other && file.open(QIODevice::ReadOnly))
        return;
    const std::string reason = is_other ? "not a regular file" : file.errorString().toStdString();
    throw std::runtime_error(file.fileName().toStdString() + ": cannot be read: " + reason);
}
