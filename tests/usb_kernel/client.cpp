// SPDX-License-Identifier: MIT
#include "tests/usb_kernel/client.h"

#include "visa/entry_points.h"
#include "visa/status_text.h"

#include <array>
#include <stdexcept>
#include <thread>

namespace usb_kernel {

namespace {

/// How long an instrument may take to appear or to leave.
constexpr std::chrono::seconds patience{20};
constexpr std::chrono::milliseconds look_interval{20};

ViSession manager()
{
    static const ViSession session = [] {
        ViSession opened = visa::null_object;
        expect_status(viOpenDefaultRM(&opened), visa::success, "the resource manager");
        return opened;
    }();
    return session;
}

} // namespace

std::vector<std::string> client_t::search()
{
    std::vector<std::string> names;
    std::array<char, 256> name{};
    ViFindList list = visa::null_object;
    ViUInt32 count = 0;
    ViStatus status = viFindRsrc(manager(), "USB?*INSTR", &list, &count, name.data());
    for (; status == visa::success; status = viFindNext(list, name.data()))
        names.emplace_back(name.data());
    viClose(list);
    return names;
}

ViStatus open_now(const std::string &name, ViSession &session)
{
    return viOpen(manager(), name.c_str(), 0, 0, &session);
}

client_t::client_t(const std::string &name)
{
    wait_until("the instrument can be opened",
               [this, &name] { return open_now(name, session) == visa::success; });
    viSetAttribute(session, visa::attribute_timeout, usual_time.count());
}

client_t::~client_t()
{
    viClose(session);
}

ViStatus client_t::write(std::string_view bytes) const
{
    ViUInt32 count = 0;
    const ViStatus status = viWrite(session, reinterpret_cast<const ViUInt8 *>(bytes.data()),
                                    static_cast<ViUInt32>(bytes.size()), &count);
    expect(status != visa::success || count == bytes.size(), "all bytes are counted");
    return status;
}

ViStatus client_t::read(std::string &bytes, std::size_t most, std::chrono::milliseconds time) const
{
    bytes.assign(most, '\0');
    ViUInt32 count = 0;
    viSetAttribute(session, visa::attribute_timeout, time.count());
    const ViStatus status = viRead(session, reinterpret_cast<ViUInt8 *>(bytes.data()),
                                   static_cast<ViUInt32>(most), &count);
    viSetAttribute(session, visa::attribute_timeout, usual_time.count());
    bytes.resize(count);
    return status;
}

ViStatus client_t::clear() const
{
    return viClear(session);
}

std::string client_t::query(std::string_view message, std::chrono::milliseconds time) const
{
    expect_status(write(message), visa::success, "write");
    std::string reply;
    expect_status(read(reply, 20'000, time), visa::success, "read");
    return reply;
}

void wait_until(const char *what, const std::function<bool()> &is_so)
{
    const auto give_up = test_clock_t::now() + patience;
    while (!is_so()) {
        expect(test_clock_t::now() < give_up, what);
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
