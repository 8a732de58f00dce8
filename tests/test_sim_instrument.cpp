// SPDX-License-Identifier: MIT
#include "sim/fleet.h"
#include "sim/fleet_json.h"
#include "sim/sim_instrument.h"
#include "sim/state_report.h"

#include <QtTest/QTest>

#include <QJsonDocument>
#include <QJsonObject>

#include <random>
#include <string>
#include <vector>

namespace {

using sim::instrument_effect_t;
using sim::scpi_error_t;

sim::instrument_config_t config_of(int product)
{
    sim::instrument_config_t config;
    config.product = product;
    config.serial = "SN1";
    config.upgrade_id = {44, -1, 49, 0};
    return config;
}

QByteArray answer(sim::sim_instrument_t &instrument, const std::string &message)
{
    const auto outcome = instrument.receive(message);
    return outcome.reply ? QByteArray::fromStdString(*outcome.reply) : QByteArray("nothing");
}

QByteArray errors_of(const sim::sim_instrument_t &instrument)
{
    QByteArrayList codes;
    for (const scpi_error_t error : instrument.inspect().errors.content())
        codes.append(QByteArray::number(static_cast<int>(error)));
    return codes.join(' ');
}

std::string block_of(const std::string &bytes)
{
    std::string block = "UPGRADE " + bytes;
    block.resize(8 + sim::firmware_store_t::block_bytes, '\xFF');
    return block;
}

// Bytes that a text parser would stumble over.
std::string binary_bytes(std::size_t count)
{
    const std::string pattern("\x00;\n\r,\"\x80 *IDN?", 13);
    std::string bytes;
    while (bytes.size() < count)
        bytes += pattern;
    return bytes.substr(0, count);
}

} // namespace

class test_sim_instrument : public QObject
{
    Q_OBJECT

private slots:
    void command_gets_its_exact_reply_and_errors_data();
    void command_gets_its_exact_reply_and_errors();
    void only_long_and_short_forms_are_known_data();
    void only_long_and_short_forms_are_known();
    void vna_port_reaches_its_blocks_only_data();
    void vna_port_reaches_its_blocks_only();
    void refused_route_leaves_the_routes_data();
    void refused_route_leaves_the_routes();
    void lan_setter_refuses_bad_values_data();
    void lan_setter_refuses_bad_values();
    void dhcp_hides_but_keeps_the_fixed_address();
    void full_error_queue_reports_its_overflow();
    void status_bits_follow_the_errors();
    void reset_and_reboot_remove_routes_only();
    void provisioning_takes_effect_at_the_reboot_data();
    void provisioning_takes_effect_at_the_reboot();
    void image_arrives_without_its_padding_data();
    void image_arrives_without_its_padding();
    void bad_transfer_is_refused_and_not_ready_data();
    void bad_transfer_is_refused_and_not_ready();
    void loader_knows_only_its_commands();
    void parameters_keep_their_raw_bytes();
    void upgrade_misbehaves_as_told();
    void foreign_instrument_knows_common_commands_only();
    void bad_fleet_names_the_place_data();
    void bad_fleet_names_the_place();
    void default_fleet_is_the_documented_one();
    void any_bytes_get_a_terminated_reply_or_an_error();
};

void test_sim_instrument::command_gets_its_exact_reply_and_errors_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("errors");
    const auto row = [](const char *message, const char *reply, const char *errors = "") {
        QTest::newRow(message) << QByteArray(message) << QByteArray(reply) << QByteArray(errors);
    };
    row("*IDN?", "TMX,TMX5044,SN1,1.0.0\n");
    row("SHOW:MNAMe?", "TMX5044\n");
    row("SHOW:SERial?\r\n", "SN1\n");
    row("SHOW:SVERsion?\n", "1.0.0\n");
    row("SHOW:PRODect:ID?", "44\n");
    row("SHOW:TEMPerature?", "36.5\n");
    row("UPGRADE:ID?", "44,-1,49,0\n");
    row("ROUTes?", "0,0,0,0\n");
    row("GET:COLOR? D", "GREEN\n");
    row("SHOW:LAN:HOST:NAMe?", "TMX\n");
    row("*TST?;*OPC?;*WAI;*ESE 255;*ESE?", "0;1;255\n");
    row("SYSTem:ERRor?", "0,\"No error\"\n");
    row("", "nothing");
    row("\r\n", "nothing");
    // Header paths.
    row("ADD:ROUTe A13;ROUTe B1;:ROUTes?", "13,1,0,0\n");
    row("ADD:ROUTe A13;*OPC?;ROUTe B1;:ROUTes?", "1;13,1,0,0\n");
    row("ADD:ROUTe A13;ROUTes?", "nothing", "-113");
    row("SET:LAN:DHCP 0;IP 10.0.0.9;:SHOW:LAN:DHCP?;IP?", "0;10.0.0.9\n");
    // Arguments.
    row("SET:COLOR a , gReEn;:GET:COLOR? A", "GREEN\n");
    row("SET:COLOR A", "nothing", "-109");
    row("SET:COLOR A,", "nothing", "-109");
    row("SET:COLOR A,Cyan,Red", "nothing", "-108");
    row("SET:COLOR E,Cyan", "nothing", "-224");
    row("SET:COLOR A,deepskyblue", "nothing", "-224");
    row("GET:COLOR?", "nothing", "-109");
    row("ROUTes? A", "nothing", "-108");
    row("ADD:ROUTeA13", "nothing", "-113");
    row("*IDN ?", "nothing", "-113");
    row("*SRE 256", "nothing", "-222");
    // A command error ends the message, an execution error does not.
    row("*OPC?;FOO;*OPC?", "1\n", "-113");
    row("*OPC?;ADD:ROUTe A7;*OPC?", "1;1\n", "-222");
    row("*OPC?;;*OPC?", "1\n", "-102");
    row("SHOW:MNAMe?\x01", "nothing", "-101");
}

void test_sim_instrument::command_gets_its_exact_reply_and_errors()
{
    QFETCH(QByteArray, message);
    sim::sim_instrument_t instrument(config_of(44));
    QTEST(answer(instrument, message.toStdString()), "reply");
    QTEST(errors_of(instrument), "errors");
}

void test_sim_instrument::only_long_and_short_forms_are_known_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<bool>("known");
    for (const char *message : {"SYSTem:ERRor:NEXT?", "syst:err?", "SYST:ERROR:next?", ":SYST:ERR?",
                                "ROUT?", "routes?", "show:temp?", "SHOW:LAN:SNM?", "*idn?"})
        QTest::newRow(message) << QByteArray(message) << true;
    for (const char *message :
         {"SYSTE:ERR?", "SYS:ERR?", "SYST:ERR", "SYST:ERR:NEX?", "ROUTE?", "ROUTESS?", "SHO:TEMP?",
          "SHOW:LAN:SNMAS?", "::ROUT?", "ROUT:?", "IDN?", "*IDN", "SHOW:LAN?", "GET:COL? A"})
        QTest::newRow(message) << QByteArray(message) << false;
}

void test_sim_instrument::only_long_and_short_forms_are_known()
{
    QFETCH(QByteArray, message);
    QFETCH(bool, known);
    sim::sim_instrument_t instrument(config_of(44));
    QCOMPARE(answer(instrument, message.toStdString()) != "nothing", known);
    QCOMPARE(errors_of(instrument), known ? QByteArray() : QByteArray("-113"));
}

void test_sim_instrument::vna_port_reaches_its_blocks_only_data()
{
    QTest::addColumn<int>("product");
    QTest::addColumn<QByteArray>("ports");
    QTest::addColumn<QList<int>>("blocks"); // first port of each block of six
    QTest::newRow("21") << 21 << QByteArray("AB") << QList<int>{1};
    QTest::newRow("22") << 22 << QByteArray("AB") << QList<int>{1, 7};
    QTest::newRow("24") << 24 << QByteArray("AB") << QList<int>{1, 7, 13, 19};
    QTest::newRow("42 left") << 42 << QByteArray("AB") << QList<int>{1};
    QTest::newRow("42 right") << 42 << QByteArray("CD") << QList<int>{7};
    QTest::newRow("44 left") << 44 << QByteArray("AB") << QList<int>{1, 13};
    QTest::newRow("44 right") << 44 << QByteArray("CD") << QList<int>{7, 19};
    QTest::newRow("no C on 24") << 24 << QByteArray("CD") << QList<int>{};
}

void test_sim_instrument::vna_port_reaches_its_blocks_only()
{
    QFETCH(int, product);
    QFETCH(QByteArray, ports);
    QFETCH(QList<int>, blocks);
    for (const char port : ports) {
        for (int label = 1; label <= 25; ++label) {
            sim::sim_instrument_t instrument(config_of(product));
            instrument.receive("ADD:ROUTe " + std::string(1, port) + std::to_string(label));
            const bool reachable = blocks.contains((label - 1) / 6 * 6 + 1);
            QCOMPARE(errors_of(instrument), reachable ? QByteArray() : QByteArray("-222"));
            QCOMPARE(answer(instrument, "ROUTes?").contains(QByteArray::number(label)), reachable);
        }
    }
}

void test_sim_instrument::refused_route_leaves_the_routes_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("routes");
    QTest::addColumn<QByteArray>("errors");
    const auto row = [](const char *command, const char *routes, const char *errors) {
        QTest::newRow(command) << QByteArray(command) << QByteArray(routes) << QByteArray(errors);
    };
    row("ADD:ROUTe B13", "13,5,0,0\n", "-221"); // held by A
    row("ADD:ROUTe A13", "13,5,0,0\n", "");
    row("ADD:ROUTe A14", "14,5,0,0\n", "");
    row("ADD:ROUTe A0", "0,5,0,0\n", "");
    row("ADD:ROUTe D0", "13,5,0,0\n", "");
    row("ADD:ROUTe A7", "13,5,0,0\n", "-222");
    row("ADD:ROUTe A99", "13,5,0,0\n", "-222");
    row("ADD:ROUTe A", "13,5,0,0\n", "-224");
    row("ADD:ROUTe 13", "13,5,0,0\n", "-224");
    row("ADD:ROUTe A01", "13,5,0,0\n", "-224");
    row("ADD:ROUTe A 1", "13,5,0,0\n", "-224");
    row("ADD:ROUTe A-1", "13,5,0,0\n", "-224");
    row("ADD:ROUTe E1", "13,5,0,0\n", "-224");
    row("ADD:ROUTe A99999999999", "13,5,0,0\n", "-224");
    row("ADD:ROUTe A1,B2", "13,5,0,0\n", "-108");
}

void test_sim_instrument::refused_route_leaves_the_routes()
{
    QFETCH(QByteArray, command);
    auto config = config_of(44);
    config.routes = {"A13", "B5"};
    sim::sim_instrument_t instrument(config);
    instrument.receive(command.toStdString());
    QTEST(errors_of(instrument), "errors");
    QTEST(answer(instrument, "ROUTes?"), "routes");
}

void test_sim_instrument::lan_setter_refuses_bad_values_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("reported"); // empty: refused
    const auto row = [](const char *field, const char *value, const char *reported) {
        QTest::addRow("%s %s", field, value)
            << QByteArray(field) << QByteArray(value) << QByteArray(reported);
    };
    row("IP", "192.168.001.020", "192.168.1.20");
    for (const char *bad : {"192.168.1", "192.168.1.256", "192.168.1.1.1", "192.168..1", "0.1.2.3",
                            "224.0.0.1", "1.2.3.x", "1.2.3.-4", "1.2.3.0004"})
        row("IP", bad, "");
    row("SNMask", "255.255.252.0", "255.255.252.0");
    row("SNMask", "255.0.255.0", "");
    row("SNMask", "0.0.0.0", "");
    row("GW", "0.0.0.0", "0.0.0.0");
    row("GW", "300.1.1.1", "");
    row("DHCP", "2", "");
    row("DHCP", "ON", "");
    row("HOST:NAMe", "lab-7.site", "lab-7.site");
    row("HOST:NAMe", "-lab", "");
    row("HOST:NAMe", "lab_7", "");
    row("MAC:ADDRess", "0a-1b-2C-3d-4e-5f", "0A:1B:2C:3D:4E:5F");
    row("MAC:ADDRess", "0a:1b:2c:3d:4e", "");
    row("MAC:ADDRess", "0a:1b:2c:3d:4e:5g", "");
}

void test_sim_instrument::lan_setter_refuses_bad_values()
{
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, reported);
    sim::sim_instrument_t instrument(config_of(44));
    instrument.receive("SET:LAN:DHCP 0");
    const std::string ask = "SHOW:LAN:" + field.toStdString() + "?";
    const QByteArray before = answer(instrument, ask);
    instrument.receive("SET:LAN:" + field.toStdString() + " " + value.toStdString());
    QCOMPARE(errors_of(instrument), reported.isEmpty() ? QByteArray("-224") : QByteArray());
    QCOMPARE(answer(instrument, ask), reported.isEmpty() ? before : reported + "\n");
}

void test_sim_instrument::dhcp_hides_but_keeps_the_fixed_address()
{
    sim::sim_instrument_t instrument(config_of(44));
    instrument.receive("SET:LAN:DHCP 1;IP 10.0.0.9;SNMask 255.0.0.0;GW 10.0.0.1");
    QCOMPARE(answer(instrument, "SHOW:LAN:IP?;SNM?;GW?"),
             "192.168.1.150;255.255.255.0;192.168.1.1\n");
    instrument.receive("SET:LAN:DHCP 0");
    QCOMPARE(answer(instrument, "SHOW:LAN:IP?;SNM?;GW?"), "10.0.0.9;255.0.0.0;10.0.0.1\n");
}

void test_sim_instrument::full_error_queue_reports_its_overflow()
{
    sim::sim_instrument_t instrument(config_of(44));
    for (int error = 0; error < 25; ++error)
        instrument.receive("FOO");
    for (int error = 0; error < 19; ++error)
        QCOMPARE(answer(instrument, "SYST:ERR?"), "-113,\"Undefined header\"\n");
    QCOMPARE(answer(instrument, "SYST:ERR?"), "-350,\"Queue overflow\"\n");
    QCOMPARE(answer(instrument, "SYST:ERR?"), "0,\"No error\"\n");
}

void test_sim_instrument::status_bits_follow_the_errors()
{
    sim::sim_instrument_t instrument(config_of(44));
    QCOMPARE(answer(instrument, "*ESR?;*ESR?"), "128;0\n");
    instrument.receive("*ESE 48;*SRE 32");
    instrument.receive("FOO");
    instrument.receive("ADD:ROUTe A7");
    QCOMPARE(answer(instrument, "*STB?"), "100\n");         // error waiting, event summary, service
    QCOMPARE(answer(instrument, "*ESR?;*STB?"), "48;20\n"); // error and reply waiting
    instrument.receive("*CLS");
    QCOMPARE(answer(instrument, "*STB?;SYST:ERR?"), "0;0,\"No error\"\n");
}

void test_sim_instrument::reset_and_reboot_remove_routes_only()
{
    for (const std::string command : {"*RST", "REBOOT", "SYSTem:DEVice:DEFAULT"}) {
        sim::sim_instrument_t instrument(config_of(44));
        instrument.receive("ADD:ROUTe A1;:SET:COLOR A,Red;:SET:LAN:HOST:NAMe bench");
        const auto effect = instrument.receive(command).effect;
        QCOMPARE(effect == instrument_effect_t::reboot, command == "REBOOT");
        const bool factory = command == "SYSTem:DEVice:DEFAULT";
        QCOMPARE(answer(instrument, "ROUTes?;:GET:COLOR? A;:SHOW:LAN:HOST:NAMe?"),
                 factory ? "0,0,0,0;CYAN;TMX\n" : "0,0,0,0;RED;bench\n");
    }
}

void test_sim_instrument::provisioning_takes_effect_at_the_reboot_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("identity");
    QTest::addColumn<QByteArray>("routes");
    QTest::newRow("24") << QByteArray("TMX5024A") << QByteArray("24")
                        << QByteArray("TMX,TMX5024A,X9,1.0.0;24\n") << QByteArray("0,0\n");
    QTest::newRow("unknown code keeps the switches")
        << QByteArray("ABC") << QByteArray("99") << QByteArray("TMX,ABC,X9,1.0.0;99\n")
        << QByteArray("0,0,0,0\n");
    QTest::newRow("no type text") << QByteArray() << QByteArray("44")
                                  << QByteArray("TMX,TMX5044,X9,1.0.0;44\n")
                                  << QByteArray("0,0,0,0\n");
}

void test_sim_instrument::provisioning_takes_effect_at_the_reboot()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, code);
    sim::sim_instrument_t instrument(config_of(44));
    instrument.receive("SYSTem:DEVice:DEFAULT");
    instrument.receive("SYSTem:DEVice:PRODUCTUG " + type.toStdString());
    instrument.receive("SYSTem:DEVice:SERIAL:NUM X9");
    instrument.receive("SYSTem:DEVice:PRODUCTUG:ID " + code.toStdString());
    QCOMPARE(errors_of(instrument), type.isEmpty() ? QByteArray("-109") : QByteArray());
    QCOMPARE(answer(instrument, "*IDN?;SHOW:PRODect:ID?"), "TMX,TMX5044,SN1,1.0.0;44\n");
    instrument.receive("ADD:ROUTe A1");
    const auto effect = instrument.receive(std::string("REBOOT\0", 7)).effect;
    QVERIFY(effect == instrument_effect_t::reboot);
    QTEST(answer(instrument, "*IDN?;SHOW:PRODect:ID?"), "identity");
    QTEST(answer(instrument, "ROUTes?"), "routes");
}

void test_sim_instrument::image_arrives_without_its_padding_data()
{
    QTest::addColumn<int>("bytes");
    for (const int bytes : {1, 2047, 2048, 2049, 6144, 10000})
        QTest::addRow("%d", bytes) << bytes;
}

void test_sim_instrument::image_arrives_without_its_padding()
{
    QFETCH(int, bytes);
    const std::string image = binary_bytes(static_cast<std::size_t>(bytes));
    sim::sim_instrument_t instrument(config_of(44));
    QVERIFY(instrument.receive(std::string("REBOOT 1\0", 9)).effect == instrument_effect_t::reboot);
    instrument.receive("HOSTUG " + std::to_string(bytes));
    for (std::size_t start = 0; start < image.size(); start += 2048) {
        QCOMPARE(answer(instrument, "UPREADY?"), "1\n");
        QCOMPARE(answer(instrument, block_of(image.substr(start, 2048))), "nothing");
    }
    QCOMPARE(answer(instrument, "UPREADY?"), "1\n");
    QCOMPARE(errors_of(instrument), QByteArray());
    const auto &images = instrument.inspect().firmware.images();
    QCOMPARE(images.size(), std::size_t{1});
    QVERIFY(images[0].kind == sim::image_kind_t::host);
    QVERIFY(images[0].bytes == image);
}

void test_sim_instrument::bad_transfer_is_refused_and_not_ready_data()
{
    QTest::addColumn<QByteArrayList>("messages");
    QTest::addColumn<QByteArray>("errors");
    const QByteArray block = QByteArray::fromStdString(block_of("x"));
    QTest::newRow("host image without loader") << QByteArrayList{"HOSTUG 5"} << QByteArray("-221");
    QTest::newRow("block not announced") << QByteArrayList{block} << QByteArray("-200");
    QTest::newRow("block after refused announcement")
        << QByteArrayList{"BOOTUG 5", "BOOTUG 0", block} << QByteArray("-222 -200");
    QTest::newRow("one block too many")
        << QByteArrayList{"BOOTUG 2048", block, block} << QByteArray("-223");
    QTest::newRow("short block") << QByteArrayList{"BOOTUG 5", block.left(2055)}
                                 << QByteArray("-161");
    QTest::newRow("long block") << QByteArrayList{"BOOTUG 5", block + "x"} << QByteArray("-161");
    QTest::newRow("length is no number") << QByteArrayList{"BOOTUG 0x10"} << QByteArray("-224");
    QTest::newRow("huge image") << QByteArrayList{"BOOTUG 999999999"} << QByteArray("-222");
}

void test_sim_instrument::bad_transfer_is_refused_and_not_ready()
{
    QFETCH(QByteArrayList, messages);
    sim::sim_instrument_t instrument(config_of(44));
    for (const QByteArray &message : messages)
        instrument.receive(message.toStdString());
    QTEST(errors_of(instrument), "errors");
    QCOMPARE(answer(instrument, "UPREADY?"), "0\n");
    instrument.receive("BOOTUG 5");
    QCOMPARE(answer(instrument, "UPREADY?"), "1\n");
}

void test_sim_instrument::loader_knows_only_its_commands()
{
    sim::sim_instrument_t instrument(config_of(44));
    instrument.receive("REBOOT 1");
    for (const char *message : {"*IDN?", "UPGRADE:ID?", "UPREADY?", "SYST:ERR?"})
        QVERIFY2(answer(instrument, message) != "nothing", message);
    for (const char *message : {"ROUTes?", "SHOW:MNAMe?", "GET:COLOR? A", "SHOW:LAN:IP?"})
        QVERIFY2(answer(instrument, message) == "nothing", message);
    QCOMPARE(errors_of(instrument), "-113 -113 -113 -113");
    instrument.receive("REBOOT");
    QCOMPARE(answer(instrument, "ROUTes?"), "0,0,0,0\n");
    QCOMPARE(answer(instrument, std::string("*IDN?\0", 6)), "nothing");
    QCOMPARE(errors_of(instrument), "-101");
}

void test_sim_instrument::parameters_keep_their_raw_bytes()
{
    sim::sim_instrument_t instrument(config_of(44));
    const std::string payload = binary_bytes(40);
    const std::vector<std::string> names{"PRODUCTUG", "MANUFTRUG", "PIDUG", "VIDUG",
                                         "PRODUCTUG:ID"};
    for (const std::string &name : names)
        instrument.receive(std::string("SYSTem:DEVice:").append(name).append(" ").append(payload));
    const auto &parameters = instrument.inspect().firmware.parameters();
    QCOMPARE(parameters.size(), names.size());
    for (std::size_t index = 0; index < names.size(); ++index) {
        QCOMPARE(parameters[index].name, names[index]);
        QCOMPARE(parameters[index].bytes, payload);
    }
    QCOMPARE(errors_of(instrument), QByteArray());
}

void test_sim_instrument::upgrade_misbehaves_as_told()
{
    sim::sim_instrument_t instrument(config_of(44));
    instrument.misbehave({2, 1, 3, 0});
    instrument.receive("BOOTUG 20000");
    QCOMPARE(answer(instrument, "UPREADY?"), "1\n");
    instrument.receive(block_of("1"));
    QCOMPARE(answer(instrument, "UPREADY?;UPREADY?;UPREADY?"), "0;0;1\n");
    instrument.receive(block_of("2"));
    QCOMPARE(answer(instrument, "UPREADY?"), "1\n");
    instrument.receive(block_of("3"));
    instrument.receive("BOOTUG 100");
    QCOMPARE(answer(instrument, "UPREADY?"), "0\n");
    QCOMPARE(instrument.inspect().firmware.images()[0].bytes.size(), std::size_t{4096});
    instrument.receive("REBOOT");
    QCOMPARE(answer(instrument, "UPREADY?"), "1\n");

    instrument.misbehave({0, 0, 0, 1});
    QVERIFY(instrument.receive(block_of("1")).effect == instrument_effect_t::unplug);
    QVERIFY(instrument.receive("*IDN?").effect == instrument_effect_t::none);
}

void test_sim_instrument::foreign_instrument_knows_common_commands_only()
{
    sim::instrument_config_t config;
    config.foreign_identity = "MAKER,FG,1,2";
    sim::sim_instrument_t instrument(config);
    QCOMPARE(answer(instrument, "*IDN?;*OPC?"), "MAKER,FG,1,2;1\n");
    for (const char *message : {"ROUTes?", "REBOOT", "SYSTem:DEVice:PIDUG 1", "UPGRADE x"})
        QVERIFY(instrument.receive(message).effect == instrument_effect_t::none);
    QCOMPARE(errors_of(instrument), "-113 -113 -113 -113");
}

void test_sim_instrument::bad_fleet_names_the_place_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("place");
    const auto instrument = [](const char *members) {
        return QByteArray(R"({"instruments":[{"product":44,"serial":"S","resources":["R"],)") +
               members + "}]}";
    };
    QTest::newRow("no JSON") << QByteArray("{") << QByteArray("parse error");
    QTest::newRow("list") << QByteArray("[]") << QByteArray("fleet: ");
    QTest::newRow("unknown key") << QByteArray(R"({"reboot":1})") << QByteArray("fleet.reboot: ");
    QTest::newRow("no resource") << QByteArray(R"({"instruments":[{"product":44,"serial":"S"}]})")
                                 << QByteArray("fleet.instruments[0]: ");
    QTest::newRow("no product") << QByteArray(
                                       R"({"instruments":[{"resources":["R"],"serial":"S"}]})")
                                << QByteArray("fleet.instruments[0]: ");
    QTest::newRow("product") << instrument(R"("product":43)") << QByteArray("[0].product: ");
    QTest::newRow("taken port") << instrument(R"("routes":{"A":1,"B":1})")
                                << QByteArray("[0].routes.B: Settings conflict");
    QTest::newRow("color") << instrument(R"("colors":{"A":"PINK"})")
                           << QByteArray("[0].colors.A: ");
    QTest::newRow("address") << instrument(R"("lan":{"ip":"1.2.3"})") << QByteArray("[0].lan.ip: ");
    QTest::newRow("lease") << instrument(R"("lan":{"leased":{"ip":"1.2.3.4"}})")
                           << QByteArray("[0].lan.leased: ");
    QTest::newRow("three ids") << instrument(R"("upgrade_id":[1,2,3])")
                               << QByteArray("[0].upgrade_id: ");
    QTest::newRow("negative delay")
        << instrument(R"("response_delay_ms":-1)") << QByteArray("[0].response_delay_ms: ");
}

void test_sim_instrument::bad_fleet_names_the_place()
{
    QFETCH(QByteArray, json);
    QFETCH(QByteArray, place);
    try {
        sim::parse_fleet(json.toStdString());
        QFAIL("accepted");
    } catch (const sim::fleet_error_t &error) {
        QVERIFY2(QByteArray(error.what()).contains(place), error.what());
        QVERIFY(!QByteArray(error.what()).contains('\n'));
    }
}

void test_sim_instrument::default_fleet_is_the_documented_one()
{
    QByteArrayList lines;
    for (const auto &entry : sim::default_fleet().instruments) {
        sim::sim_instrument_t instrument(entry.config);
        const QByteArray identity = answer(instrument, "*IDN?").trimmed();
        lines.append(QByteArray::fromStdString(entry.resources.at(0)) + " " + identity);
    }
    QCOMPARE(lines.size(), 8);
    QVERIFY(!lines[0].contains("TMX") && !lines[0].contains("0xA17E::0x2000"));
    QCOMPARE(lines[1], "USB0::0xA17E::0x2000::SN44001::INSTR TMX,TMX5044,SN44001,1.0.0");
    QCOMPARE(lines[5], "USB0::0xA17E::0x2000::SN21001::INSTR TMX,TMX5021,SN21001,1.0.0");
    QCOMPARE(lines[7], "TCPIP0::127.0.0.2::INSTR TMX,TMX5024,SN24002,1.0.0");

    const sim::sim_instrument_t first(sim::default_fleet().instruments.at(1).config);
    const auto state =
        QJsonDocument::fromJson(QByteArray::fromStdString(sim::state_report(first.inspect())))
            .object();
    QCOMPARE(state["routes"].toObject()["B"].toInt(), 14);
    QCOMPARE(state["routes"].toObject()["C"].toInt(), 9);
    QCOMPARE(state["lan"].toObject()["in_use"].toObject()["ip"].toString(),
             QStringLiteral("192.168.1.150"));
}

void test_sim_instrument::any_bytes_get_a_terminated_reply_or_an_error()
{
    sim::sim_instrument_t instrument(config_of(44));
    std::minstd_rand random(7);
    const std::vector<std::string> pieces{"ADD:ROUTe", "ROUTes?", "*IDN?", ";",  ":", " ",
                                          "A13",       ",",       "\xFF",  "\n", "?", "UPGRADE ",
                                          "BOOTUG 9",  "SYST",    ":ERR?", "[",  "]"};
    for (int round = 0; round < 20000; ++round) {
        std::string message;
        for (auto count = random() % 6; count > 0; --count)
            message += pieces[random() % pieces.size()];
        instrument.receive("*CLS");
        const auto outcome = instrument.receive(message);
        const bool terminated =
            outcome.reply && outcome.reply->find('\n') == outcome.reply->size() - 1;
        const bool refused = !outcome.reply && !instrument.inspect().errors.empty();
        const bool no_query = message.find('?') == std::string::npos && !outcome.reply;
        QVERIFY2(terminated || refused || no_query, message.c_str());
    }
}

QTEST_APPLESS_MAIN(test_sim_instrument)
#include "test_sim_instrument.moc"
