// SPDX-License-Identifier: MIT
#include "sim/visa/visa_call.h"
#include "visa/common_answers.h"
#include "visa/operations.h"
#include "visa/resource_name.h"
#include "visa/resource_search.h"

#include <string>
#include <string_view>
#include <utility>

namespace visa::operations {

using namespace sim;
using namespace sim::visa;

namespace {

constexpr const char *library_maker = "Corvane simulated instruments";
constexpr ViUInt32 library_version = 0x00200000; // 2.0.0

object_attributes_t library_attributes()
{
    object_attributes_t attributes;
    attributes.library_maker = library_maker;
    attributes.library_version = library_version;
    return attributes;
}

// "TMX,TMX5044,SN1,1.0.0": the maker, and what comes behind.
std::pair<std::string, std::string> split_field(const std::string &text)
{
    const std::size_t comma = text.find(',');
    return {text.substr(0, comma), comma == std::string::npos ? "" : text.substr(comma + 1)};
}

object_attributes_t attributes_at(bus_state_t &state, place_t place, ViSession manager)
{
    const bus_place_t &there = state.place(place);
    const auto [maker, rest] = split_field(state.instrument_at(place).inspect().identification());
    object_attributes_t attributes = library_attributes();
    attributes.kind = there.name.bus == resource_name_t::bus_t::usb
                          ? object_attributes_t::kind_t::usb
                          : object_attributes_t::kind_t::tcpip;
    attributes.manager = manager;
    attributes.name_text = there.name_text;
    attributes.name = there.name;
    attributes.address = there.name.host;
    attributes.instrument_maker = maker;
    attributes.instrument_model = split_field(rest).first;
    attributes.timeout_ms = static_cast<ViUInt32>(state.default_timeout().count());
    return attributes;
}

std::vector<std::string> names_on(bus_state_t &state, const resource_search_t &search)
{
    std::vector<std::string> names;
    for (place_t place = 0; place < state.places().size(); ++place) {
        const std::string &name = state.place(place).name_text;
        const auto attributes = [&] { return attributes_at(state, place, null_object); };
        if (state.is_present(place) && search.finds(name, attributes))
            names.push_back(name);
    }
    return names;
}

std::shared_ptr<visa_session_t> connect(visa_world_t &world, const resource_name_t &name,
                                        ViSession manager)
{
    const auto place = world.bus.access()->find(name);
    auto port = place ? world.bus.open(*place) : nullptr;
    if (!port)
        return nullptr;
    auto session = std::make_shared<visa_session_t>();
    session->attributes = attributes_at(*world.bus.access(), *place, manager);
    session->port = std::move(port);
    return session;
}

} // namespace

ViStatus open_default_manager(ViSession *manager)
{
    visa_call_t call(null_object);
    if (const auto verdict = call.count(operation_t::open_manager))
        return *verdict;
    if (manager == nullptr)
        return error_user_buffer;
    *manager = call.world.objects.add_manager(library_attributes());
    return success;
}

ViStatus find_resources(ViSession manager, const char *expression, ViFindList *list,
                        ViUInt32 *count, char *name)
{
    visa_call_t call(manager);
    if (const auto verdict = call.count(operation_t::find))
        return *verdict;
    return call.world.objects.find(manager, expression, list, count, name,
                                   [&call](const resource_search_t &search) {
                                       return names_on(*call.world.bus.access(), search);
                                   });
}

ViStatus find_next(ViFindList list, char *name)
{
    visa_call_t call(list);
    if (const auto verdict = call.count(operation_t::find_next))
        return *verdict;
    return call.world.objects.find_next(list, name);
}

ViStatus parse_resource(ViSession manager, const char *name, ViUInt16 *interface_type,
                        ViUInt16 *interface_number, char *resource_class, char *full_name,
                        char *alias)
{
    visa_call_t call(manager);
    if (const auto verdict = call.count(operation_t::other))
        return *verdict;
    if (call.world.objects.manager(manager) == nullptr)
        return error_invalid_object;
    return describe_resource(name, interface_type, interface_number, resource_class, full_name,
                             alias);
}

ViStatus open_session(ViSession manager, const char *name, ViAccessMode mode, ViUInt32 timeout_ms,
                      ViSession *session)
{
    if (session != nullptr)
        *session = null_object;
    const auto read = read_resource_name(name == nullptr ? "" : name);
    visa_call_t call(manager);
    call.release();
    const auto place = read ? call.world.bus.access()->find(*read) : std::nullopt;
    const bus_outcome_t counted = call.world.bus.note_call(operation_t::open, place);
    if (!counted.ok())
        return status_of(counted);
    call.lock.lock();
    if (call.world.objects.manager(manager) == nullptr)
        return error_invalid_object;
    if (session == nullptr)
        return error_user_buffer;
    if ((mode & ~(access_exclusive_lock | access_load_config)) != 0)
        return error_invalid_access_mode;
    if (!read)
        return error_invalid_resource_name;
    const auto opened = connect(call.world, *read, manager);
    if (!opened)
        return error_resource_not_found;
    const ViSession number = call.world.objects.add_session(opened);
    call.release();
    if ((mode & access_exclusive_lock) != 0) {
        const bus_lock_t locked = opened->port->lock_exclusive(deadline_after(timeout_ms));
        if (!locked.ok()) {
            call.world.close(number);
            return status_of(locked);
        }
    }
    *session = number;
    return success;
}

ViStatus close_object(ViObject object)
{
    visa_call_t call(object);
    if (const auto verdict = call.count(operation_t::close))
        return *verdict;
    if (object == null_object)
        return warning_null_object;
    call.release();
    return call.world.close(object) ? success : error_invalid_object;
}

namespace {

// What the attributes of an object are kept in; null for one that has none.
object_attributes_t *attributes_of(visa_call_t &call, ViObject object)
{
    if (call.session)
        return call.session->closed ? nullptr : &call.session->attributes;
    return call.world.objects.manager(object);
}

} // namespace

ViStatus set_object_attribute(ViObject object, ViAttr attribute, ViAttrState value)
{
    visa_call_t call(object);
    if (const auto verdict = call.count(operation_t::set_attribute))
        return *verdict;
    object_attributes_t *const attributes = attributes_of(call, object);
    return attributes == nullptr ? error_invalid_object
                                 : set_attribute(*attributes, attribute, value);
}

ViStatus get_object_attribute(ViObject object, ViAttr attribute, void *value)
{
    visa_call_t call(object);
    if (const auto verdict = call.count(operation_t::get_attribute))
        return *verdict;
    if (value == nullptr)
        return error_user_buffer;
    object_attributes_t *const attributes = attributes_of(call, object);
    if (attributes == nullptr)
        return error_invalid_object;
    if (call.session && attribute == attribute_lock_state)
        attributes->lock_state = call.session->port->lock_state();
    return get_attribute(*attributes, attribute, value);
}

} // namespace visa::operations
