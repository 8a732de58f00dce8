// SPDX-License-Identifier: MIT
#include "drv/pause.h"

#include <QThread>

#if defined(Q_OS_WIN)
#include <windows.h>
// Needs the types of windows.h.
#include <timeapi.h>
#elif defined(Q_OS_LINUX)
#include <sys/prctl.h>
#endif

namespace {

#if defined(Q_OS_WIN)

constexpr UINT resolution_ms = 1;

void begin_precise_sleep()
{
    timeBeginPeriod(resolution_ms);
}

void end_precise_sleep()
{
    timeEndPeriod(resolution_ms);
}

#elif defined(Q_OS_LINUX)

constexpr unsigned long least_slack_ns = 1;
constexpr unsigned long default_slack = 0;

void begin_precise_sleep()
{
    prctl(PR_SET_TIMERSLACK, least_slack_ns, 0UL, 0UL, 0UL);
}

void end_precise_sleep()
{
    prctl(PR_SET_TIMERSLACK, default_slack, 0UL, 0UL, 0UL);
}

#else

void begin_precise_sleep() {}
void end_precise_sleep() {}

#endif

} // namespace

void pause_ms(unsigned long milliseconds)
{
    begin_precise_sleep();
    QThread::msleep(milliseconds);
    end_precise_sleep();
}
