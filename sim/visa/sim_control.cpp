// SPDX-License-Identifier: MIT
#include "sim/visa/sim_control.h"

#include "sim/bus/fleet_json.h"
#include "sim/instrument/state_report.h"
#include "sim/visa/visa_world.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace {

using sim::bus_state_t;
using sim::visa::visa_world_t;

// The numbers of the control interface are those of the bus.
static_assert(static_cast<int>(sim::operation_t::find) == CORVANE_SIM_FIND_RSRC);
static_assert(static_cast<int>(sim::operation_t::read) == CORVANE_SIM_READ);
static_assert(static_cast<int>(sim::operation_t::other) == CORVANE_SIM_OTHER_ENTRY);
static_assert(static_cast<int>(sim::fault_kind_t::unplug) == CORVANE_SIM_FAULT_UNPLUG);

thread_local std::string last_error;

// Runs an action on the world. A failure becomes the thread's last error and the given result.
template <typename result_t, typename action_t>
result_t with_world(result_t result_on_failure, action_t action) noexcept
{
    try {
        return action(visa_world_t::instance());
    } catch (const std::exception &error) {
        last_error = error.what();
        return result_on_failure;
    }
}

// The same with the bus locked.
template <typename result_t, typename action_t>
result_t with_bus(result_t result_on_failure, action_t action) noexcept
{
    return with_world(result_on_failure, [&action](visa_world_t &world) -> result_t {
        const auto everything = world.bus.access();
        return action(*everything);
    });
}

[[noreturn]] void refuse(const std::string &reason)
{
    throw std::invalid_argument(reason);
}

std::size_t resource_named(const bus_state_t &bus, const char *name)
{
    const auto resource = bus.find(name == nullptr ? "" : name);
    if (!resource)
        refuse("unknown resource \"" + std::string(name == nullptr ? "" : name) + "\"");
    return *resource;
}

std::optional<std::size_t> resource_or_any(const bus_state_t &bus, const char *name)
{
    return name == nullptr ? std::nullopt : std::optional(resource_named(bus, name));
}

const sim::firmware_store_t &firmware_of(bus_state_t &bus, const char *resource)
{
    return bus.instrument_at(resource_named(bus, resource)).inspect().firmware;
}

std::string bytes_of(const void *bytes, std::size_t length)
{
    if (bytes == nullptr && length > 0)
        refuse("null bytes");
    return length == 0 ? std::string() : std::string(static_cast<const char *>(bytes), length);
}

std::size_t copy_bytes(std::string_view bytes, void *target, std::size_t capacity)
{
    const std::size_t count = std::min(bytes.size(), capacity);
    if (target != nullptr && count > 0)
        std::memcpy(target, bytes.data(), count);
    return bytes.size();
}

std::size_t copy_text(std::string_view text, char *target, std::size_t capacity)
{
    if (target == nullptr || capacity == 0)
        return text.size();
    const std::size_t count = std::min(text.size(), capacity - 1);
    copy_bytes(text.substr(0, count), target, count);
    target[count] = '\0';
    return text.size();
}

template <typename list_t>
const auto &entry_of(const list_t &list, std::size_t index)
{
    if (index >= list.size())
        refuse("no entry " + std::to_string(index));
    return list[index];
}

constexpr std::size_t resource_name_bytes = 256;
constexpr std::size_t parameter_name_bytes = 32;
constexpr int host_segment_type = 1;
constexpr int boot_segment_type = 3;

} // namespace

void corvane_sim_reset(void)
{
    with_world(0, [](visa_world_t &world) {
        world.reset();
        return 0;
    });
}

int corvane_sim_load_fleet(const char *json)
{
    return with_world(-1, [json](visa_world_t &world) {
        if (json == nullptr)
            refuse("null text");
        world.load(sim::parse_fleet(json));
        return 0;
    });
}

size_t corvane_sim_last_error(char *text, size_t capacity)
{
    return copy_text(last_error, text, capacity);
}

size_t corvane_sim_log_count(void)
{
    return with_bus(CORVANE_SIM_NONE, [](bus_state_t &bus) { return bus.log.entries().size(); });
}

size_t corvane_sim_log_entry(size_t index, char *resource_name, int64_t *time_ns, void *bytes,
                             size_t capacity)
{
    return with_bus(CORVANE_SIM_NONE, [=](bus_state_t &bus) {
        const auto &entry = entry_of(bus.log.entries(), index);
        copy_text(entry.resource, resource_name, resource_name_bytes);
        if (time_ns != nullptr)
            *time_ns = std::chrono::nanoseconds(entry.time.time_since_epoch()).count();
        return copy_bytes(entry.bytes, bytes, capacity);
    });
}

void corvane_sim_log_clear(void)
{
    with_bus(0, [](bus_state_t &bus) {
        bus.log.clear();
        return 0;
    });
}

void corvane_sim_log_enable(int on)
{
    with_bus(0, [on](bus_state_t &bus) {
        bus.log.enabled = on != 0;
        return 0;
    });
}

uint64_t corvane_sim_call_count(corvane_sim_entry_t entry)
{
    return with_bus(std::uint64_t{0}, [entry](bus_state_t &bus) {
        return bus.faults.call_count(static_cast<sim::operation_t>(entry));
    });
}

int corvane_sim_add_fault(const corvane_sim_fault_t *fault)
{
    return with_bus(-1, [fault](bus_state_t &bus) {
        if (fault == nullptr || fault->nth == 0)
            refuse("no fault, or its call number is 0");
        bus.faults.add({static_cast<sim::fault_kind_t>(fault->kind),
                        static_cast<sim::operation_t>(fault->entry), fault->nth,
                        resource_or_any(bus, fault->resource), fault->sticky != 0, fault->value,
                        bytes_of(fault->bytes, fault->length)});
        return 0;
    });
}

void corvane_sim_clear_faults(void)
{
    with_bus(0, [](bus_state_t &bus) {
        bus.faults.clear();
        return 0;
    });
}

int corvane_sim_script_reply(const char *resource, const void *message, size_t message_length,
                             const void *reply, size_t reply_length, int times)
{
    return with_bus(-1, [=](bus_state_t &bus) {
        if (message_length == 0 || times == 0)
            refuse("no message, or no times");
        bus.scripts.add({resource_or_any(bus, resource), bytes_of(message, message_length),
                         bytes_of(reply, reply_length), times});
        return 0;
    });
}

void corvane_sim_clear_scripts(void)
{
    with_bus(0, [](bus_state_t &bus) {
        bus.scripts.clear();
        return 0;
    });
}

int corvane_sim_unplug(const char *resource)
{
    return with_bus(-1, [resource](bus_state_t &bus) {
        bus.unplug(resource_named(bus, resource));
        return 0;
    });
}

int corvane_sim_plug(const char *resource)
{
    return with_bus(-1, [resource](bus_state_t &bus) {
        bus.plug(resource_named(bus, resource));
        return 0;
    });
}

int corvane_sim_is_present(const char *resource)
{
    return with_bus(-1, [resource](bus_state_t &bus) {
        return bus.is_present(resource_named(bus, resource)) ? 1 : 0;
    });
}

size_t corvane_sim_state(const char *resource, char *json, size_t capacity)
{
    return with_bus(CORVANE_SIM_NONE, [=](bus_state_t &bus) {
        const auto &instrument = bus.instrument_at(resource_named(bus, resource));
        return copy_text(sim::state_report(instrument.inspect()), json, capacity);
    });
}

size_t corvane_sim_image_count(const char *resource)
{
    return with_bus(CORVANE_SIM_NONE, [resource](bus_state_t &bus) {
        return firmware_of(bus, resource).images().size();
    });
}

size_t corvane_sim_image(const char *resource, size_t index, int *kind, size_t *announced_bytes,
                         void *bytes, size_t capacity)
{
    return with_bus(CORVANE_SIM_NONE, [=](bus_state_t &bus) {
        const auto &image = entry_of(firmware_of(bus, resource).images(), index);
        if (kind != nullptr)
            *kind = image.kind == sim::image_kind_t::host ? host_segment_type : boot_segment_type;
        if (announced_bytes != nullptr)
            *announced_bytes = image.announced_bytes;
        return copy_bytes(image.bytes, bytes, capacity);
    });
}

size_t corvane_sim_parameter_count(const char *resource)
{
    return with_bus(CORVANE_SIM_NONE, [resource](bus_state_t &bus) {
        return firmware_of(bus, resource).parameters().size();
    });
}

size_t corvane_sim_parameter(const char *resource, size_t index, char *name, void *bytes,
                             size_t capacity)
{
    return with_bus(CORVANE_SIM_NONE, [=](bus_state_t &bus) {
        const auto &parameter = entry_of(firmware_of(bus, resource).parameters(), index);
        copy_text(parameter.name, name, parameter_name_bytes);
        return copy_bytes(parameter.bytes, bytes, capacity);
    });
}

int corvane_sim_upgrade_misbehave(const char *resource, uint32_t busy_polls,
                                  uint32_t busy_after_block, uint32_t unready_at_block,
                                  uint32_t unplug_at_block)
{
    return with_bus(-1, [=](bus_state_t &bus) {
        bus.instrument_at(resource_named(bus, resource))
            .misbehave({busy_polls, busy_after_block, unready_at_block, unplug_at_block});
        return 0;
    });
}
