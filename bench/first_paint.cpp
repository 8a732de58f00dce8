// SPDX-License-Identifier: MIT
// Tells from inside an unmodified Qt program, by LD_PRELOAD, when it has painted its first window:
// on its standard output, in nanoseconds of the monotonic clock.

#include <QBackingStore>

#include <cstdio>
#include <ctime>
#include <dlfcn.h>

namespace {

using flush_t = void (*)(QBackingStore *, const QRegion &, QWindow *, const QPoint &);

flush_t find_flush()
{
    return reinterpret_cast<flush_t>(
        dlsym(RTLD_NEXT, "_ZN13QBackingStore5flushERK7QRegionP7QWindowRK6QPoint"));
}

void report_time()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    std::printf("%lld\n", static_cast<long long>(now.tv_sec) * 1'000'000'000 + now.tv_nsec);
    std::fflush(stdout);
}

} // namespace

/// Qt Widgets calls this to bring what it has painted to the screen.
void QBackingStore::flush(const QRegion &region, QWindow *window, const QPoint &offset)
{
    static const flush_t qt_flush = find_flush();
    qt_flush(this, region, window, offset);
    static const bool reported = (report_time(), true);
    static_cast<void>(reported);
}
