// SPDX-License-Identifier: MIT
#pragma once

#include "visa/find_list.h"
#include "visa/object_attributes.h"
#include "visa/resource_search.h"
#include "visa/visa_types.h"

#include <iterator>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace visa {

/// The objects that a program has open: resource managers, sessions with instruments, find lists.
/// Not synchronised. A session_t has `attributes`, of the type object_attributes_t.
template <typename session_t>
class object_table_t
{
public:
    using sessions_t = std::vector<std::shared_ptr<session_t>>;

    /// Each takes an object over and returns its number, which was never used before.
    ViSession add_manager(object_attributes_t attributes)
    {
        return add(managers, std::move(attributes));
    }
    ViSession add_session(std::shared_ptr<session_t> session)
    {
        return add(sessions, std::move(session));
    }

    /// Each returns null when the number stands for something else or nothing.
    std::shared_ptr<session_t> session(ViObject object) const
    {
        const auto found = sessions.find(object);
        return found == sessions.end() ? nullptr : found->second;
    }
    object_attributes_t *manager(ViObject object) { return value_in(managers, object); }

    /// Answer viFindRsrc and viFindNext. `names_of` says what a resource_search_t finds now.
    template <typename names_of_t>
    ViStatus find(ViSession manager_number, const char *expression, ViFindList *list,
                  ViUInt32 *count, char *name, names_of_t names_of)
    {
        if (manager(manager_number) == nullptr)
            return error_invalid_object;
        const auto search = resource_search_t::read(expression == nullptr ? "" : expression);
        if (!search)
            return error_invalid_expression;
        if (name == nullptr)
            return error_user_buffer;
        find_list_t found{manager_number, names_of(*search)};
        if (count != nullptr)
            *count = static_cast<ViUInt32>(found.names.size());
        if (list != nullptr)
            *list = null_object;
        const ViStatus status = found.hand_out(name);
        if (status == success && list != nullptr)
            *list = add_find_list(std::move(found));
        return status;
    }
    ViStatus find_next(ViFindList list, char *name)
    {
        find_list_t *const found = find_list(list);
        return found == nullptr ? error_invalid_object : found->hand_out(name);
    }

    bool is_known(ViObject object) const
    {
        return managers.count(object) + find_lists.count(object) + sessions.count(object) > 0;
    }

    /// Takes an object out, with everything opened through it, and returns the sessions among that;
    /// nothing when the number stands for nothing.
    std::optional<sessions_t> close(ViObject object)
    {
        sessions_t closed;
        if (auto own = session(object)) {
            sessions.erase(object);
            closed.push_back(std::move(own));
        } else if (managers.erase(object) > 0) {
            closed = close_all_of(object);
        } else if (find_lists.erase(object) == 0) {
            return std::nullopt;
        }
        return closed;
    }

    /// Takes everything out but the managers, and returns the sessions.
    sessions_t close_all()
    {
        sessions_t closed;
        for (auto &entry : sessions)
            closed.push_back(std::move(entry.second));
        sessions.clear();
        find_lists.clear();
        return closed;
    }

private:
    ViFindList add_find_list(find_list_t list) { return add(find_lists, std::move(list)); }
    find_list_t *find_list(ViObject object) { return value_in(find_lists, object); }

    sessions_t close_all_of(ViSession manager)
    {
        sessions_t closed;
        for (auto entry = sessions.begin(); entry != sessions.end();) {
            const bool goes = entry->second->attributes.manager == manager;
            if (goes)
                closed.push_back(std::move(entry->second));
            entry = goes ? sessions.erase(entry) : std::next(entry);
        }
        for (auto entry = find_lists.begin(); entry != find_lists.end();) {
            const bool goes = entry->second.manager == manager;
            entry = goes ? find_lists.erase(entry) : std::next(entry);
        }
        return closed;
    }

    template <typename map_t, typename value_t>
    ViObject add(map_t &map, value_t value)
    {
        map.emplace(++last_number, std::move(value));
        return last_number;
    }

    template <typename value_t>
    static value_t *value_in(std::unordered_map<ViObject, value_t> &map, ViObject object)
    {
        const auto found = map.find(object);
        return found == map.end() ? nullptr : &found->second;
    }

    std::unordered_map<ViSession, object_attributes_t> managers;
    std::unordered_map<ViSession, std::shared_ptr<session_t>> sessions;
    std::unordered_map<ViFindList, find_list_t> find_lists;
    ViObject last_number = null_object;
};

} // namespace visa
