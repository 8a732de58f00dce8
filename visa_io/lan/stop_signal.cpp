// SPDX-License-Identifier: MIT
#include "visa_io/lan/stop_signal.h"

#include <cerrno>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace visa_io {

stop_signal_t::stop_signal_t() : event(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (event < 0)
        throw std::system_error(errno, std::generic_category());
}

stop_signal_t::~stop_signal_t()
{
    close(event);
}

void stop_signal_t::give() const
{
    // Fails only when it has been given before.
    [[maybe_unused]] const int failed = eventfd_write(event, 1);
}

} // namespace visa_io
