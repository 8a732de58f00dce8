// SPDX-License-Identifier: MIT
#include "tools/package_manifest.h"

#include "tools/readable_file.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

/// A wrong key is more likely a misspelt one than one that is meant for somebody else.
void require_keys(const json &object, std::initializer_list<const char *> keys)
{
    if (!object.is_object())
        throw std::runtime_error("not a JSON object");
    for (const char *const key : keys)
        if (!object.contains(key))
            throw std::runtime_error(std::string("\"") + key + "\" is missing");
    for (const auto &item : object.items())
        if (std::find(keys.begin(), keys.end(), item.key()) == keys.end())
            throw std::runtime_error("\"" + item.key() + "\" is not known here");
}

const segment_kind_t *kind_named(const json &type)
{
    for (const segment_kind_t &kind : segment_kinds)
        if (type == kind.name || type == kind.type)
            return &kind;
    throw std::runtime_error("there is no segment type " + type.dump());
}

std::int32_t product_id_of(const json &manifest)
{
    const json &id = manifest.at("product_id");
    using limits_t = std::numeric_limits<std::int32_t>;
    // As a double, which no integer of the text wraps around in.
    const bool fits = id.is_number_integer() && id.get<double>() >= limits_t::min() &&
                      id.get<double>() <= limits_t::max();
    if (!fits)
        throw std::runtime_error("\"product_id\" is not an integer of 32 bits");
    return id.get<std::int32_t>();
}

planned_segment_t planned_segment(const json &entry, const std::filesystem::path &folder)
{
    require_keys(entry, {"type", "file"});
    const auto file = entry.at("file").get<std::string>();
    const std::filesystem::path payload = folder / std::filesystem::u8path(file);
    open_to_read(payload);
    const segment_kind_t *const kind = kind_named(entry.at("type"));
    const std::uintmax_t size = std::filesystem::file_size(payload);
    const auto bytes = static_cast<std::uint32_t>(size);
    if (bytes != size || !payload_fits(*kind, bytes))
        throw std::runtime_error(file + " is too long for this type");
    return {kind, payload, bytes};
}

/// Of two equal keys the parser would drop the first without a word.
json parse_manifest(std::istream &text)
{
    std::vector<std::set<json>> keys;
    const auto look_at = [&keys](int /*depth*/, json::parse_event_t event, json &parsed) {
        if (event == json::parse_event_t::object_start)
            keys.emplace_back();
        else if (event == json::parse_event_t::object_end)
            keys.pop_back();
        else if (event == json::parse_event_t::key && !keys.back().insert(parsed).second)
            throw std::runtime_error(parsed.dump() + " is given twice");
        return true;
    };
    return json::parse(text, look_at);
}

package_plan_t plan_of(const json &manifest, const std::filesystem::path &folder)
{
    require_keys(manifest, {"product_id", "segments"});
    const json &entries = manifest.at("segments");
    if (!entries.is_array() || entries.empty())
        throw std::runtime_error("\"segments\" is not a list of at least one");
    package_plan_t plan{product_id_of(manifest), {}};
    for (const json &entry : entries) {
        try {
            plan.segments.push_back(planned_segment(entry, folder));
        } catch (const std::exception &error) {
            throw std::runtime_error("segment " + std::to_string(plan.segments.size() + 1) + ": " +
                                     error.what());
        }
    }
    return plan;
}

} // namespace

package_plan_t read_manifest(const std::filesystem::path &path)
{
    std::ifstream text = open_to_read(path);
    try {
        return plan_of(parse_manifest(text), path.parent_path());
    } catch (const std::exception &error) {
        throw std::runtime_error(path.u8string() + ": " + error.what());
    }
}
