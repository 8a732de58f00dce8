// SPDX-License-Identifier: MIT
// How many thousand queries a second our VISA library for real instruments makes over LAN:
// bench_visa ADDRESS QUERIES

#include "visa/entry_points.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

bool query(ViSession session)
{
    constexpr std::string_view text = "*IDN?";
    ViUInt8 reply[100];
    ViUInt32 count = 0;
    return viWrite(session, reinterpret_cast<const ViUInt8 *>(text.data()),
                   static_cast<ViUInt32>(text.size()), &count) == visa::success &&
           viRead(session, reply, sizeof reply, &count) == visa::success;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    const std::string name = std::string("TCPIP0::") + argv[1] + "::INSTR";
    const long queries = std::strtol(argv[2], nullptr, 10);
    ViSession manager = visa::null_object;
    ViSession session = visa::null_object;
    if (viOpenDefaultRM(&manager) != visa::success ||
        viOpen(manager, name.c_str(), 0, 1000, &session) != visa::success || !query(session))
        return 1;
    const auto begin = std::chrono::steady_clock::now();
    for (long done = 0; done < queries; ++done)
        if (!query(session))
            return 1;
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    std::printf("%.3f\n", static_cast<double>(queries) / taken.count());
    return viClose(manager) == visa::success ? 0 : 1;
}
