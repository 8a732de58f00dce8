// SPDX-License-Identifier: MIT
// Prints the name of each instrument that visa32.dll finds with the instrument's reply to "*IDN?".
// scripts/build-windows compares that, so that a call that fails is seen there.

#include "visa/entry_points.h"

#include <iostream>
#include <string>

namespace {

void print_identity(ViSession manager, const char *resource)
{
    const std::string query = "*IDN?\n";
    char reply[100] = {};
    ViUInt32 count = 0;
    ViSession session = 0;
    viOpen(manager, resource, 0, 0, &session);
    viSetAttribute(session, visa::attribute_timeout, 1000);
    viWrite(session, reinterpret_cast<const ViUInt8 *>(query.data()),
            static_cast<ViUInt32>(query.size()), &count);
    viRead(session, reinterpret_cast<ViUInt8 *>(reply), sizeof reply, &count);
    viClose(session);
    std::cout << resource << ' ' << std::string(reply, count);
}

} // namespace

int main()
{
    ViSession manager = 0;
    ViFindList list = 0;
    ViUInt32 count = 0;
    char resource[visa::find_buffer_bytes] = {};
    viOpenDefaultRM(&manager);
    if (viFindRsrc(manager, "?*INSTR", &list, &count, resource) != visa::success)
        return 1;
    for (print_identity(manager, resource); --count > 0; print_identity(manager, resource))
        viFindNext(list, resource);
    return viClose(manager);
}
