// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QThread>

/// In debug builds, ends the program when the caller is not on the GUI thread. Before there is an
/// application object, as in static initialisers, every thread will do.
inline void assert_gui_thread()
{
    Q_ASSERT_X(QCoreApplication::instance() == nullptr ||
                   QCoreApplication::instance()->thread() == QThread::currentThread(),
               "assert_gui_thread", "used beside the GUI thread");
}
