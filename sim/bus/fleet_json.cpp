// SPDX-License-Identifier: MIT
#include "sim/bus/fleet_json.h"

#include "sim/instrument/product_catalog.h"
#include "sim/instrument/route_matrix.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace sim {

namespace {

using json_t = nlohmann::json;
using std::chrono::milliseconds;

[[noreturn]] void refuse(const std::string &place, const std::string &reason)
{
    throw fleet_error_t(place + ": " + reason);
}

// How a key of an object is read into the target; rows of the tables below.
template <typename target_t>
struct key_t
{
    const char *name;
    void (*read)(const json_t &value, const std::string &place, target_t &target);
};

template <typename target_t>
void read_object(const json_t &object, const std::string &place, target_t &target,
                 const std::vector<key_t<target_t>> &keys)
{
    if (!object.is_object())
        refuse(place, "must be an object");
    for (const auto &item : object.items()) {
        const std::string item_place = place + "." + item.key();
        const key_t<target_t> *found = nullptr;
        for (const auto &key : keys)
            found = item.key() == key.name ? &key : found;
        if (found == nullptr)
            refuse(item_place, "unknown key");
        found->read(item.value(), item_place, target);
    }
}

std::string text_of(const json_t &value, const std::string &place)
{
    if (!value.is_string() || value.get_ref<const std::string &>().empty())
        refuse(place, "must be a text that is not empty");
    return value.get<std::string>();
}

int number_of(const json_t &value, const std::string &place)
{
    constexpr int largest = 1'000'000'000;
    if (!value.is_number_integer() || value < -largest || value > largest)
        refuse(place, "must be a whole number");
    return value.get<int>();
}

milliseconds duration_of(const json_t &value, const std::string &place)
{
    const int number = number_of(value, place);
    if (number < 0)
        refuse(place, "must not be negative");
    return milliseconds(number);
}

void require(scpi_error_t error, const std::string &place)
{
    if (error != scpi_error_t::none)
        refuse(place, std::string(error_text(error)));
}

void read_lease(const json_t &value, const std::string &place, lan_config_t &lan)
{
    static const std::vector<key_t<ip_settings_t>> keys{
        {"ip", [](const auto &v, const auto &p, auto &ip) { ip.address = text_of(v, p); }},
        {"mask", [](const auto &v, const auto &p, auto &ip) { ip.mask = text_of(v, p); }},
        {"gateway", [](const auto &v, const auto &p, auto &ip) { ip.gateway = text_of(v, p); }},
    };
    ip_settings_t lease;
    read_object(value, place, lease, keys);
    require(lan.set_lease(lease), place);
}

void read_dhcp(const json_t &value, const std::string &place, lan_config_t &lan)
{
    if (!value.is_boolean())
        refuse(place, "must be true or false");
    require(lan.set_dhcp(value.get<bool>() ? "1" : "0"), place);
}

template <scpi_error_t (lan_config_t::*set)(std::string_view)>
void read_lan_text(const json_t &value, const std::string &place, lan_config_t &lan)
{
    require((lan.*set)(text_of(value, place)), place);
}

void read_lan(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    static const std::vector<key_t<lan_config_t>> keys{
        {"dhcp", read_dhcp},
        {"host_name", read_lan_text<&lan_config_t::set_host_name>},
        {"ip", read_lan_text<&lan_config_t::set_address>},
        {"mask", read_lan_text<&lan_config_t::set_mask>},
        {"gateway", read_lan_text<&lan_config_t::set_gateway>},
        {"mac", read_lan_text<&lan_config_t::set_mac>},
        {"leased", read_lease},
    };
    read_object(value, place, instrument.config.lan, keys);
}

void read_colors(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    if (!value.is_object())
        refuse(place, "must be an object");
    for (const auto &item : value.items()) {
        const std::string item_place = place + "." + item.key();
        require(instrument.config.colors.set(item.key(), text_of(item.value(), item_place)),
                item_place);
    }
}

void read_routes(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    if (!value.is_object())
        refuse(place, "must be an object");
    for (const auto &item : value.items()) {
        const int test_port = number_of(item.value(), place + "." + item.key());
        instrument.config.routes.push_back(item.key() + std::to_string(test_port));
    }
}

void read_product(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    instrument.config.product = number_of(value, place);
    if (find_product(instrument.config.product) == nullptr)
        refuse(place, "must be one of " + product_ids());
}

void read_resources(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    if (!value.is_array() || value.empty())
        refuse(place, "must be a list of resource names");
    for (const json_t &name : value)
        instrument.resources.push_back(text_of(name, place));
}

void read_upgrade_id(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    auto &id = instrument.config.upgrade_id;
    if (!value.is_array() || value.size() != id.size())
        refuse(place, "must be a list of four numbers");
    for (std::size_t index = 0; index < id.size(); ++index)
        id.at(index) = number_of(value[index], place);
}

void read_temperature(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    if (!value.is_number() || value < -100 || value > 200)
        refuse(place, "must be a number of degrees Celsius");
    char text[16] = "";
    std::snprintf(text, sizeof text, "%.1f", value.get<double>());
    instrument.config.temperature = text;
}

template <std::string instrument_config_t::*field>
void read_text(const json_t &value, const std::string &place, fleet_instrument_t &instrument)
{
    instrument.config.*field = text_of(value, place);
}

const std::vector<key_t<fleet_instrument_t>> &instrument_keys()
{
    static const std::vector<key_t<fleet_instrument_t>> keys{
        {"identity", read_text<&instrument_config_t::foreign_identity>},
        {"product", read_product},
        {"serial", read_text<&instrument_config_t::serial>},
        {"version", read_text<&instrument_config_t::version>},
        {"resources", read_resources},
        {"routes", read_routes},
        {"colors", read_colors},
        {"lan", read_lan},
        {"temperature", read_temperature},
        {"upgrade_id", read_upgrade_id},
        {"response_delay_ms", [](const auto &value, const auto &place, auto &instrument) {
             instrument.response_delay = duration_of(value, place);
         }}};
    return keys;
}

// The routes depend on the product and on each other, so they are checked at the end.
void check_instrument(const fleet_instrument_t &instrument, const std::string &place)
{
    const instrument_config_t &config = instrument.config;
    if (instrument.resources.empty())
        refuse(place, "\"resources\" is missing");
    if (!config.foreign_identity.empty())
        return;
    if (config.serial.empty())
        refuse(place, "\"serial\" is missing");
    route_matrix_t routes(*find_product(config.product));
    for (const std::string &route : config.routes)
        require(routes.apply(route), place + ".routes." + route.substr(0, 1));
}

void read_instruments(const json_t &value, const std::string &place, fleet_t &fleet)
{
    if (!value.is_array())
        refuse(place, "must be a list");
    for (const json_t &item : value) {
        const std::string item_place = place + "[" + std::to_string(fleet.instruments.size()) + "]";
        fleet_instrument_t instrument;
        read_object(item, item_place, instrument, instrument_keys());
        if (!item.contains("product") && !item.contains("identity"))
            refuse(item_place, "\"product\" or \"identity\" is missing");
        check_instrument(instrument, item_place);
        fleet.instruments.push_back(std::move(instrument));
    }
}

} // namespace

fleet_t parse_fleet(std::string_view text)
{
    static const std::vector<key_t<fleet_t>> keys{
        {"default_timeout_ms",
         [](const auto &value, const auto &place, auto &fleet) {
             fleet.default_timeout = duration_of(value, place);
         }},
        {"reboot_ms", [](const auto &value, const auto &place,
                         auto &fleet) { fleet.reboot_time = duration_of(value, place); }},
        {"instruments", read_instruments},
    };
    fleet_t fleet;
    try {
        read_object(json_t::parse(text), "fleet", fleet, keys);
    } catch (const json_t::exception &error) {
        throw fleet_error_t(error.what());
    }
    return fleet;
}

fleet_t read_fleet_file(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw fleet_error_t("cannot be read");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return parse_fleet(text);
}

} // namespace sim
