// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>

/// Puts a waiting dialog on the screen when it is made; make it on the GUI thread.
///
/// The dialog is on its own from then on: it is for the caller to close and delete. Once started,
/// the thread never finishes, and a thread object must not be destroyed while it runs.
class waiting_thread : public QThread
{
    Q_OBJECT

public:
    waiting_thread();

protected:
    void run() override;
};
