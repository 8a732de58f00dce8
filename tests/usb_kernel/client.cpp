// SPDX-License-Identifier: MIT
#include "tests/usb_kernel/client.h"

#include "visa/resource_name.h"
#include "visa/status_text.h"
#include "visa_io/usb/usb_bus.h"

#include <stdexcept>
#include <thread>

namespace usb_kernel {

namespace {

/// How long an instrument may take to appear or to leave.
constexpr std::chrono::seconds patience{20};
constexpr std::chrono::milliseconds look_interval{20};

} // namespace

std::vector<std::string> client_t::search()
{
    std::vector<std::string> names;
    for (const auto &instrument : visa_io::find_usb_instruments())
        names.push_back(instrument.name_text);
    return names;
}

client_t::client_t(const std::string &name)
{
    wait_until("the instrument can be opened", [this, &name] {
        visa::object_attributes_t attributes;
        const auto read = visa::read_resource_name(name);
        return read && visa_io::open_usb_instrument(*read, until(usual_time), link, attributes) ==
                           visa::success;
    });
}

visa_io::transfer_t client_t::write(std::string_view bytes) const
{
    return link->write(bytes, true, until(usual_time));
}

visa_io::transfer_t client_t::read(std::string &bytes, std::size_t most,
                                   std::chrono::milliseconds time) const
{
    bytes.assign(most, '\0');
    const auto read = link->read(bytes.data(), bytes.size(), -1, until(time));
    bytes.resize(read.count);
    return read;
}

std::string client_t::query(std::string_view message, std::chrono::milliseconds time) const
{
    expect_status(write(message).status, visa::success, "write");
    std::string reply;
    const auto read = this->read(reply, 20'000, time);
    expect_status(read.status, visa::success, "read");
    expect(read.end, "the reply has an end");
    return reply;
}

void wait_until(const char *what, const std::function<bool()> &is_so)
{
    const auto give_up = visa_io::io_clock_t::now() + patience;
    while (!is_so()) {
        expect(visa_io::io_clock_t::now() < give_up, what);
        std::this_thread::sleep_for(look_interval);
    }
}

void expect(bool is_so, const std::string &what)
{
    if (!is_so)
        throw std::runtime_error("not so: " + what);
}

void expect_status(ViStatus status, ViStatus expected, const std::string &what)
{
    if (status != expected)
        throw std::runtime_error(what + ": \"" + std::string(visa::status_text(status)) +
                                 "\" in place of \"" + std::string(visa::status_text(expected)) +
                                 '"');
}

} // namespace usb_kernel
