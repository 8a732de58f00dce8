// SPDX-License-Identifier: MIT
// Takes the C library's pauses out of a program from outside, by LD_PRELOAD, to measure what a long
// transfer does apart from waiting.

#include <ctime>

extern "C" __attribute__((visibility("default"))) int nanosleep(const timespec * /*duration*/,
                                                                timespec * /*left*/)
{
    return 0;
}

extern "C" __attribute__((visibility("default"))) int clock_nanosleep(clockid_t /*clock*/,
                                                                      int /*flags*/,
                                                                      const timespec * /*duration*/,
                                                                      timespec * /*left*/)
{
    return 0;
}
