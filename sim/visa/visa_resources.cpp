// SPDX-License-Identifier: MIT
#include "sim/visa/visa_resources.h"

#include "sim/visa/resource_expression.h"
#include "sim/visa/visa_attributes.h"
#include "sim/visa/visa_call.h"

#include <cstring>
#include <string>
#include <utility>

namespace sim::visa {

namespace {

// The bus takes only names that fit a find buffer.
void store_name(char *target, const std::string &name)
{
    std::memcpy(target, name.c_str(), name.size() + 1);
}

std::shared_ptr<visa_session_t> new_session(visa_world_t &world, ViSession manager,
                                            std::size_t resource)
{
    const bus_resource_t &place = world.bus.resource(resource);
    auto session = std::make_shared<visa_session_t>();
    session->handle = world.new_handle();
    session->resource_manager = manager;
    session->resource = resource;
    session->connection = place.connection;
    session->name_text = place.name_text;
    session->name = place.name;
    session->timeout_ms = world.bus.default_timeout_ms();
    return session;
}

} // namespace

ViStatus open_default_manager(ViSession *manager)
{
    const visa_call_t call(CORVANE_SIM_OPEN_DEFAULT_RM, null_object);
    if (call.verdict())
        return *call.verdict();
    if (manager == nullptr)
        return error_user_buffer;
    *manager = call.world.new_handle();
    call.world.managers.insert(*manager);
    return success;
}

ViStatus find_resources(ViSession manager, const char *expression, ViFindList *list,
                        ViUInt32 *count, char *name)
{
    const visa_call_t call(CORVANE_SIM_FIND_RSRC, manager);
    if (call.verdict())
        return *call.verdict();
    if (call.world.managers.count(manager) == 0)
        return error_invalid_object;
    const auto search = resource_expression_t::read(expression == nullptr ? "" : expression);
    if (!search)
        return error_invalid_expression;
    if (name == nullptr)
        return error_user_buffer;

    find_list_t found{manager, call.world.bus.find(*search), 1};
    if (count != nullptr)
        *count = static_cast<ViUInt32>(found.names.size());
    if (list != nullptr)
        *list = null_object;
    if (found.names.empty())
        return error_resource_not_found;
    store_name(name, found.names.front());
    if (list != nullptr) {
        *list = call.world.new_handle();
        call.world.find_lists.emplace(*list, std::move(found));
    }
    return success;
}

ViStatus find_next(ViFindList list, char *name)
{
    const visa_call_t call(CORVANE_SIM_FIND_NEXT, list);
    if (call.verdict())
        return *call.verdict();
    const auto found = call.world.find_lists.find(list);
    if (found == call.world.find_lists.end())
        return error_invalid_object;
    if (name == nullptr)
        return error_user_buffer;
    find_list_t &names = found->second;
    if (names.next >= names.names.size())
        return error_resource_not_found;
    store_name(name, names.names[names.next++]);
    return success;
}

ViStatus open_session(ViSession manager, const char *name, ViAccessMode mode, ViSession *session)
{
    const visa_call_t call(CORVANE_SIM_OPEN, std::string_view(name == nullptr ? "" : name));
    if (session != nullptr)
        *session = null_object;
    if (call.verdict())
        return *call.verdict();
    if (call.world.managers.count(manager) == 0)
        return error_invalid_object;
    if (session == nullptr)
        return error_user_buffer;
    if (mode != access_no_lock && mode != access_load_config)
        return error_invalid_access_mode;
    const auto read = read_resource_name(name == nullptr ? "" : name);
    if (!read)
        return error_invalid_resource_name;
    const auto resource = call.world.bus.resource_of(*read);
    if (!resource || !call.world.bus.is_present(*resource))
        return error_resource_not_found;
    const auto opened = new_session(call.world, manager, *resource);
    call.world.sessions.emplace(opened->handle, opened);
    *session = opened->handle;
    return success;
}

ViStatus close_object(ViObject object)
{
    const visa_call_t call(CORVANE_SIM_CLOSE, object);
    if (call.verdict())
        return *call.verdict();
    if (object == null_object)
        return warning_null_object;
    return call.world.close(object) ? success : error_invalid_object;
}

ViStatus set_object_attribute(ViObject object, ViAttr attribute, ViAttrState value)
{
    const visa_call_t call(CORVANE_SIM_SET_ATTRIBUTE, object);
    if (call.verdict())
        return *call.verdict();
    if (call.session && !call.session->closed)
        return set_attribute(*call.session, attribute, value);
    return call.world.managers.count(object) > 0 ? error_attribute_not_supported
                                                 : error_invalid_object;
}

ViStatus get_object_attribute(ViObject object, ViAttr attribute, void *value)
{
    const visa_call_t call(CORVANE_SIM_GET_ATTRIBUTE, object);
    if (call.verdict())
        return *call.verdict();
    if (value == nullptr)
        return error_user_buffer;
    if (call.session && !call.session->closed)
        return get_attribute(*call.session, attribute, value);
    return call.world.managers.count(object) > 0 ? get_manager_attribute(attribute, value)
                                                 : error_invalid_object;
}

} // namespace sim::visa
