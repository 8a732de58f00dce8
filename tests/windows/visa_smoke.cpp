// SPDX-License-Identifier: MIT
// Loads visa32.dll as a Windows program does, and prints the name of each instrument that it finds
// with the instrument's reply to "*IDN?". scripts/build-windows compares that.

#include "visa/entry_points.h"

#include <iostream>
#include <stdexcept>
#include <string>
#include <windows.h>

namespace {

template <typename entry_t>
entry_t entry_point(const char *name)
{
    static const HMODULE library = LoadLibraryA("visa32.dll");
    const FARPROC found = library != nullptr ? GetProcAddress(library, name) : nullptr;
    if (found == nullptr)
        throw std::runtime_error(std::string(name) + " is not there");
    return reinterpret_cast<entry_t>(reinterpret_cast<void *>(found));
}

void check(const char *name, ViStatus status)
{
    if (status < 0)
        throw std::runtime_error(std::string(name) + " answers " + std::to_string(status));
}

/// The declaration in the header gives the calling convention.
#define CORVANE_CALL(name, ...) check(#name, entry_point<decltype(&name)>(#name)(__VA_ARGS__))

void print_identity(ViSession manager, const char *resource)
{
    const std::string query = "*IDN?\n";
    char reply[100] = {};
    ViUInt32 count = 0;
    ViSession session = 0;
    CORVANE_CALL(viOpen, manager, resource, 0, 0, &session);
    CORVANE_CALL(viSetAttribute, session, visa::attribute_timeout, 1000);
    CORVANE_CALL(viWrite, session, reinterpret_cast<const ViUInt8 *>(query.data()),
                 static_cast<ViUInt32>(query.size()), &count);
    CORVANE_CALL(viRead, session, reinterpret_cast<ViUInt8 *>(reply), sizeof reply, &count);
    CORVANE_CALL(viClose, session);
    std::cout << resource << ' ' << std::string(reply, count);
}

void print_instruments()
{
    ViSession manager = 0;
    ViFindList list = 0;
    ViUInt32 count = 0;
    char resource[visa::find_buffer_bytes] = {};
    CORVANE_CALL(viOpenDefaultRM, &manager);
    CORVANE_CALL(viFindRsrc, manager, "?*INSTR", &list, &count, resource);
    for (print_identity(manager, resource); --count > 0; print_identity(manager, resource))
        CORVANE_CALL(viFindNext, list, resource);
    CORVANE_CALL(viClose, manager);
}

} // namespace

int main()
{
    try {
        print_instruments();
        return 0;
    } catch (const std::exception &error) {
        std::cerr << "visa_smoke: " << error.what() << '\n';
        return 1;
    }
}
