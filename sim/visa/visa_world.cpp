// SPDX-License-Identifier: MIT
#include "sim/visa/visa_world.h"

#include "sim/bus/fleet_json.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

namespace sim::visa {

namespace {

/// The file that the user names, empty for none. As the system gives it: the code page of Windows
/// lacks most characters.
std::filesystem::path fleet_file()
{
#ifdef _WIN32
    const wchar_t *const path = _wgetenv(L"CORVANE_SIM_FLEET");
#else
    const char *const path = std::getenv("CORVANE_SIM_FLEET");
#endif
    return path != nullptr ? path : std::filesystem::path();
}

} // namespace

visa_world_t &visa_world_t::instance()
{
    // Never destroyed: other threads may still be inside a call while the process exits.
    static auto *const world = new visa_world_t();
    return *world;
}

visa_world_t::visa_world_t()
{
    const std::filesystem::path path = fleet_file();
    if (path.empty()) {
        start_fleet = default_fleet();
        bus.load(start_fleet);
        return;
    }
    try {
        start_fleet = read_fleet_file(path);
        bus.load(start_fleet);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "corvane simulator: no instruments, fleet file \"%s\": %s\n",
                     path.u8string().c_str(), error.what());
        start_fleet = fleet_t();
    }
}

void visa_world_t::load(const fleet_t &fleet)
{
    const std::lock_guard<std::mutex> guard(mutex);
    bus.load(fleet);
    end(objects.close_all());
}

void visa_world_t::reset()
{
    load(start_fleet);
    const auto everything = bus.access();
    everything->faults = fault_plan_t();
    everything->log = traffic_log_t();
}

bool visa_world_t::close(ViObject object)
{
    const std::lock_guard<std::mutex> guard(mutex);
    const auto closed = objects.close(object);
    if (closed)
        end(*closed);
    return closed.has_value();
}

void visa_world_t::end(const object_table_t<visa_session_t>::sessions_t &sessions)
{
    for (const auto &session : sessions) {
        session->closed = true;
        session->port->close();
    }
    closing.notify_all();
}

} // namespace sim::visa
