// SPDX-License-Identifier: MIT
// Two VISA libraries that are of no use: one lacks viRead, the other's default resource manager
// does not open.

#include <cstdint>

#define CORVANE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr auto system_error = static_cast<std::int32_t>(0xBFFF0000);

} // namespace

CORVANE_EXPORT std::int32_t viOpenDefaultRM(std::uint32_t *session)
{
    *session = 1;
#ifdef CORVANE_LACKS_READ
    return 0;
#else
    return system_error;
#endif
}

#define CORVANE_REFUSING(name)                                                                     \
    CORVANE_EXPORT std::int32_t name()                                                             \
    {                                                                                              \
        return system_error;                                                                       \
    }

CORVANE_REFUSING(viSetAttribute)
CORVANE_REFUSING(viGetAttribute)
CORVANE_REFUSING(viClose)
CORVANE_REFUSING(viFindRsrc)
CORVANE_REFUSING(viFindNext)
CORVANE_REFUSING(viOpen)
CORVANE_REFUSING(viClear)
CORVANE_REFUSING(viWrite)
#ifndef CORVANE_LACKS_READ
CORVANE_REFUSING(viRead)
#endif
