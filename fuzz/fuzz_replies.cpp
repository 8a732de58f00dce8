// SPDX-License-Identifier: MIT
// Lets an instrument answer every query with the same arbitrary bytes. The command layer hands out
// exactly the text or the field that these bytes hold, and leaves everything else as it was.

#include "drv/drv_command.h"
#include "drv/drv_device.h"
#include "drv/visa_transport.h"
#include "tests/support/simulator.h"

#include <cstdint>
#include <optional>
#include <string>

namespace {

const QByteArray resource = "USB0::0xA17E::0x2000::SN44001::INSTR";
const std::string untouched = "untouched";

void require(bool holds, const char *what)
{
    if (!holds)
        qFatal("%s", what);
}

using answer_t = std::optional<QByteArray>;

/// What a reply says, without its last character; nothing when it has none.
answer_t answer_in(const QByteArray &reply)
{
    const QByteArray read = reply.left(static_cast<int>(visa_transport_t::reply_buffer_bytes));
    const QByteArray text(read.constData());
    return text.isEmpty() ? std::nullopt : answer_t(text.chopped(1));
}

/// What a text that was `untouched` becomes.
std::string expected(const answer_t &text)
{
    return text ? text->toStdString() : untouched;
}

void check_routes(const answer_t &answer, drv_command_t &command)
{
    const QList<QByteArray> fields = answer.value_or(QByteArray()).split(',');
    const struct
    {
        const char *port;
        bool (drv_command_t::*read)(const std::string &, std::string &);
        int field;
    } rows[] = {{"A", &drv_command_t::route_of_ab, 0}, {"B", &drv_command_t::route_of_ab, 1},
                {"A", &drv_command_t::route_of, 0},    {"B", &drv_command_t::route_of, 1},
                {"C", &drv_command_t::route_of, 2},    {"D", &drv_command_t::route_of, 3}};
    for (const auto &row : rows) {
        std::string route = untouched;
        const bool answered = (command.*row.read)(row.port, route);
        require(answered == answer.has_value(), "an answer is missed or made up");
        require(route == (answered ? fields.value(row.field).toStdString() : untouched),
                "a route is not what was answered");
    }
}

void check_upgrade_id(const answer_t &answer, drv_command_t &command)
{
    constexpr int unset = -77;
    upgrade_id_t id{unset, unset, unset, unset};
    require(command.upgrade_id_read(id) == answer.has_value(), "an answer is missed or made up");
    const int numbers[] = {id.id, id.lowest, id.highest, id.exact};
    const QList<QByteArray> fields = answer ? answer->split(',') : QList<QByteArray>();
    for (int place = 0; place < 4; ++place) {
        bool is_number = false;
        const int number = fields.value(place).toInt(&is_number);
        if (place >= fields.size())
            require(numbers[place] == unset, "a number is made up");
        else if (is_number)
            require(numbers[place] == number, "a number is not what was answered");
    }
}

void check_records(const answer_t &answer, drv_command_t &command)
{
    std::string color = untouched;
    command.get_color("A", color);
    require(color == expected(answer), "a colour is changed");
    device_info_t info{untouched, untouched, untouched, {}, untouched};
    lan_settings_t lan{untouched, untouched, untouched, untouched, untouched, untouched};
    require(command.device_info_read(info) == answer.has_value(), "an answer is missed");
    require(command.lan_read(lan) == answer.has_value(), "an answer is missed");
    for (const std::string &field : {info.model_name, info.product_id, lan.dhcp, lan.mac_address})
        require(field == expected(answer), "a setting is changed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static simulator_t simulator;
    simulator.reset();
    const QByteArray reply(reinterpret_cast<const char *>(data), static_cast<int>(size));
    for (const char *const query :
         {"ROUTes?", "UPGRADE:ID?", "GET:COLOR? A", "SHOW:MNAMe?", "SHOW:SERial?", "SHOW:SVERsion?",
          "SHOW:PRODect:ID?", "SHOW:LAN:DHCP?", "SHOW:LAN:IP?", "SHOW:LAN:SNMask?", "SHOW:LAN:GW?",
          "SHOW:LAN:HOST:NAMe?", "SHOW:LAN:MAC:ADDRess?"})
        simulator.script_reply(query, reply);
    require(drv_device_t::instance()->usb_connect_resource(resource.toStdString()), "no link");
    drv_command_t &command = *drv_command_t::instance();
    command.set_link_mode(link_modes::connected);
    const answer_t answer = answer_in(reply);
    check_routes(answer, command);
    check_upgrade_id(answer, command);
    check_records(answer, command);
    return 0;
}
