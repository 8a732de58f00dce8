// SPDX-License-Identifier: MIT
#include "tests/usb_kernel/driver_link.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <linux/usb/tmc.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

namespace usb_kernel {

namespace {

using visa_io::deadline_t;
using visa_io::transfer_t;

/// The driver refuses less.
constexpr std::int64_t shortest_time_ms = 100;

struct found_t
{
    std::string name;
    std::string node;
};

std::string line_of(const std::filesystem::path &file)
{
    std::string line;
    std::ifstream in(file);
    std::getline(in, line);
    return line;
}

std::string upper_case(std::string hexadecimal)
{
    for (char &digit : hexadecimal)
        digit = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    return hexadecimal;
}

std::vector<found_t> search_nodes()
{
    std::vector<found_t> found;
    std::error_code error; // of an instrument that leaves meanwhile
    std::filesystem::directory_iterator entry("/sys/class/usbmisc", error), end;
    for (; !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        const auto device = std::filesystem::canonical(entry->path(), gone) / "../../..";
        found.push_back({"USB0::0x" + upper_case(line_of(device / "idVendor")) + "::0x" +
                             upper_case(line_of(device / "idProduct")) +
                             "::" + line_of(device / "serial") + "::INSTR",
                         "/dev/" + entry->path().filename().string()});
    }
    return found;
}

} // namespace

std::vector<std::string> driver_link_t::search()
{
    std::vector<std::string> names;
    for (found_t &found : search_nodes())
        names.push_back(std::move(found.name));
    return names;
}

std::unique_ptr<driver_link_t> driver_link_t::open(const std::string &name)
{
    const auto all = search_nodes();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&name](const found_t &one) { return one.name == name; });
    const int opened = found == all.end() ? -1 : ::open(found->node.c_str(), O_RDWR | O_CLOEXEC);
    return opened < 0 ? nullptr : std::make_unique<driver_link_t>(opened);
}

driver_link_t::~driver_link_t()
{
    close(descriptor);
}

transfer_t driver_link_t::write(std::string_view data, bool end, deadline_t deadline)
{
    allow_until(deadline);
    std::uint8_t ends = end ? 1 : 0;
    if (ioctl(descriptor, USBTMC_IOCTL_EOM_ENABLE, &ends) < 0)
        return {status_of(false), 0, false};
    const auto count = ::write(descriptor, data.data(), data.size());
    return {status_of(count >= 0), static_cast<std::size_t>(std::max<ssize_t>(count, 0)), false};
}

transfer_t driver_link_t::read(char *buffer, std::size_t size, int term_char, deadline_t deadline)
{
    allow_until(deadline);
    usbtmc_termchar termination{static_cast<std::uint8_t>(std::max(term_char, 0)),
                                static_cast<std::uint8_t>(term_char >= 0 ? 1 : 0)};
    if (ioctl(descriptor, USBTMC_IOCTL_CONFIG_TERMCHAR, &termination) < 0)
        return {status_of(false), 0, false};
    const auto count = ::read(descriptor, buffer, size);
    if (count < 0)
        return {status_of(false), 0, false};
    std::uint8_t attributes = 0;
    const bool known = ioctl(descriptor, USBTMC_IOCTL_MSG_IN_ATTR, &attributes) >= 0;
    return {status_of(known), static_cast<std::size_t>(count), (attributes & 1U) != 0};
}

ViStatus driver_link_t::clear(deadline_t deadline)
{
    allow_until(deadline);
    return status_of(ioctl(descriptor, USBTMC_IOCTL_CLEAR) >= 0);
}

ViStatus driver_link_t::read_status_byte(ViUInt8 &status, deadline_t deadline)
{
    allow_until(deadline);
    return status_of(ioctl(descriptor, USBTMC488_IOCTL_READ_STB, &status) >= 0);
}

ViStatus driver_link_t::trigger(deadline_t deadline)
{
    allow_until(deadline);
    return status_of(ioctl(descriptor, USBTMC488_IOCTL_TRIGGER) >= 0);
}

void driver_link_t::allow_until(deadline_t deadline) const
{
    using std::chrono::milliseconds;
    const auto left =
        std::chrono::duration_cast<milliseconds>(deadline - visa_io::io_clock_t::now()).count();
    auto time_ms = static_cast<std::uint32_t>(std::max<std::int64_t>(left, shortest_time_ms));
    ioctl(descriptor, USBTMC_IOCTL_SET_TIMEOUT, &time_ms);
}

ViStatus driver_link_t::status_of(bool succeeded)
{
    const bool timed_out = !succeeded && errno == ETIMEDOUT;
    lost = lost || (!succeeded && !timed_out);
    if (lost)
        return visa::error_connection_lost;
    // The driver's own abort after a time-out does not reach the transfer that it means.
    if (timed_out)
        ioctl(descriptor, USBTMC_IOCTL_CLEAR);
    return timed_out ? visa::error_timeout : visa::success;
}

} // namespace usb_kernel
