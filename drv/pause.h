// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>

/// Lets the calling thread sleep for `milliseconds`.
inline void pause_ms(unsigned long milliseconds)
{
    QThread::msleep(milliseconds);
}
