// SPDX-License-Identifier: MIT
#include "visa/common_answers.h"
#include "visa/operations.h"
#include "visa/resource_name.h"
#include "visa/resource_search.h"
#include "visa_io/bus_table.h"
#include "visa_io/session_call.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace visa::operations {

using namespace visa_io;

namespace {

constexpr const char *library_maker = "Corvane";
constexpr ViUInt32 library_version = 0x00100000; // 1.0.0

/// What reaching an instrument may take when the caller allows less.
constexpr ViUInt32 least_open_ms = 1000;

object_attributes_t library_attributes()
{
    object_attributes_t attributes;
    attributes.library_maker = library_maker;
    attributes.library_version = library_version;
    return attributes;
}

bool is_manager(ViSession number)
{
    const session_call_t call(number);
    return call.world.objects.manager(number) != nullptr;
}

/// What the attributes of an object are kept in; null for one that has none.
object_attributes_t *attributes_of(const session_call_t &call, ViObject object)
{
    return call ? &call.session->attributes : call.world.objects.manager(object);
}

ViStatus connect(const resource_name_t &name, ViUInt32 timeout_ms, session_t &session)
{
    const bus_t *const bus = bus_of(name);
    if (bus == nullptr)
        return error_resource_not_found;
    session.attributes = library_attributes();
    return bus->open(name, deadline_after(std::max(timeout_ms, least_open_ms)), session.link,
                     session.attributes);
}

/// Gives a session its number; none when its manager was closed meanwhile.
ViSession enter(ViSession manager, const std::shared_ptr<session_t> &session)
{
    const session_call_t call(manager);
    if (call.world.objects.manager(manager) == nullptr)
        return null_object;
    session->attributes.manager = manager;
    session->lock = call.world.lock_of(session->attributes.name.key);
    return call.world.objects.add_session(session);
}

ViStatus lock_exclusively(ViSession number, ViUInt32 timeout_ms)
{
    session_call_t call(number);
    return call ? call.lock(access_exclusive_lock, {}, timeout_ms) : error_invalid_object;
}

} // namespace

ViStatus open_default_manager(ViSession *manager)
{
    if (manager == nullptr)
        return error_user_buffer;
    const session_call_t call(null_object);
    *manager = call.world.objects.add_manager(library_attributes());
    return success;
}

ViStatus find_resources(ViSession manager, const char *expression, ViFindList *list,
                        ViUInt32 *count, char *name)
{
    const auto instruments = find_instruments();
    const session_call_t call(manager);
    return call.world.objects.find(
        manager, expression, list, count, name, [&](const resource_search_t &search) {
            std::vector<std::string> names;
            for (const object_attributes_t &instrument : instruments)
                if (search.finds(instrument.name_text, [&] { return instrument; }))
                    names.push_back(instrument.name_text);
            return names;
        });
}

ViStatus find_next(ViFindList list, char *name)
{
    const session_call_t call(list);
    return call.world.objects.find_next(list, name);
}

ViStatus parse_resource(ViSession manager, const char *name, ViUInt16 *interface_type,
                        ViUInt16 *interface_number, char *resource_class, char *full_name,
                        char *alias)
{
    return is_manager(manager) ? describe_resource(name, interface_type, interface_number,
                                                   resource_class, full_name, alias)
                               : error_invalid_object;
}

ViStatus open_session(ViSession manager, const char *name, ViAccessMode mode, ViUInt32 timeout_ms,
                      ViSession *session)
{
    if (session != nullptr)
        *session = null_object;
    if (!is_manager(manager))
        return error_invalid_object;
    if (session == nullptr)
        return error_user_buffer;
    if ((mode & ~(access_exclusive_lock | access_load_config)) != 0)
        return error_invalid_access_mode;
    const auto read = read_resource_name(name == nullptr ? "" : name);
    if (!read)
        return error_invalid_resource_name;

    const auto opened = std::make_shared<session_t>();
    ViStatus status = connect(*read, timeout_ms, *opened);
    if (status < success)
        return status;
    const ViSession number = enter(manager, opened);
    if (number == null_object)
        return error_invalid_object;
    if ((mode & access_exclusive_lock) != 0)
        status = lock_exclusively(number, timeout_ms);
    if (status < success)
        close_object(number);
    else
        *session = number;
    return status;
}

ViStatus close_object(ViObject object)
{
    if (object == null_object)
        return warning_null_object;
    world_t &world = world_t::instance();
    world_t::guard_t guard(world.mutex);
    const auto closed = world.close(object);
    guard.unlock();
    return closed ? success : error_invalid_object;
}

ViStatus set_object_attribute(ViObject object, ViAttr attribute, ViAttrState value)
{
    const session_call_t call(object);
    object_attributes_t *const attributes = attributes_of(call, object);
    return attributes == nullptr ? error_invalid_object
                                 : set_attribute(*attributes, attribute, value);
}

ViStatus get_object_attribute(ViObject object, ViAttr attribute, void *value)
{
    if (value == nullptr)
        return error_user_buffer;
    const session_call_t call(object);
    object_attributes_t *const attributes = attributes_of(call, object);
    if (attributes == nullptr)
        return error_invalid_object;
    if (call)
        attributes->lock_state = call.session->lock->state();
    return get_attribute(*attributes, attribute, value);
}

} // namespace visa::operations
