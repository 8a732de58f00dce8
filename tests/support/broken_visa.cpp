// SPDX-License-Identifier: MIT
// VISA libraries that are of no use: one lacks viWrite and viRead, another's default resource
// manager does not open. A third one opens whatever it is asked to open without a lock and within
// 200 ms.

#include <cstdint>

#define CORVANE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr auto system_error = static_cast<std::int32_t>(0xBFFF0000);

} // namespace

CORVANE_EXPORT std::int32_t viOpenDefaultRM(std::uint32_t *session)
{
    *session = 1;
#ifdef CORVANE_LACKS_MANAGER
    return system_error;
#else
    return 0;
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
#ifdef CORVANE_OPENS
CORVANE_EXPORT std::int32_t viOpen(std::uint32_t manager, const char * /*name*/, std::uint32_t mode,
                                   std::uint32_t timeout_ms, std::uint32_t *session)
{
    *session = 2;
    return manager == 1 && mode == 0 && timeout_ms == 200 ? 0 : system_error;
}
#else
CORVANE_REFUSING(viOpen)
#endif
CORVANE_REFUSING(viClear)
#ifndef CORVANE_LACKS_TRANSFERS
CORVANE_REFUSING(viWrite)
CORVANE_REFUSING(viRead)
#endif
