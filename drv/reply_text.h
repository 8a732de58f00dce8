// SPDX-License-Identifier: MIT
#pragma once

#include "drv/instrument_records.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

/// Stores a reply in `out` without its last character, the instrument's line terminator, whichever
/// that is. False, with `out` left alone, when there is no reply at all.
inline bool take_reply(std::string reply, std::string &out)
{
    if (reply.empty())
        return false;
    reply.pop_back();
    out = std::move(reply);
    return true;
}

/// The comma-separated fields of a reply; an empty reply is one empty field.
inline std::vector<std::string> fields_of(const std::string &reply)
{
    std::vector<std::string> fields;
    // A comma ends the last field as well.
    std::istringstream rest(reply + ',');
    for (std::string field; std::getline(rest, field, ',');)
        fields.push_back(field);
    return fields;
}

/// Takes the four numbers from an upgrade identity. Fields that it lacks are left alone; one that
/// is no number is 0.
inline void read_upgrade_id(const std::string &reply, upgrade_id_t &record)
{
    const std::vector<std::string> fields = fields_of(reply);
    int *const places[] = {&record.id, &record.lowest, &record.highest, &record.exact};
    const std::size_t count = std::min(fields.size(), std::size(places));
    for (std::size_t index = 0; index < count; ++index)
        *places[index] = static_cast<int>(std::strtol(fields[index].c_str(), nullptr, 10));
}
