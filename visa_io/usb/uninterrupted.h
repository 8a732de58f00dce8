// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>

namespace visa_io {

/// Makes a call of the kernel until no signal interrupts it. Its result is negative on failure,
/// with the reason in errno.
template <typename call_t>
auto uninterrupted(call_t call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace visa_io
