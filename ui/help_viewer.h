// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// A program with its arguments.
struct viewer_command_t
{
    QString program;
    QStringList arguments;
};

/// How this platform shows the open-source acknowledgment.
viewer_command_t acknowledgment_viewer();
