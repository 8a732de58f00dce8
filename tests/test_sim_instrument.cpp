// SPDX-License-Identifier: MIT
#include "sim/fleet.h"
#include "sim/fleet_json.h"
#include "sim/sim_instrument.h"

#include <QtTest/QTest>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using sim::instrument_effect_t;

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
    for (const auto error : instrument.inspect().errors.content())
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
    const QByteArray pattern("\x00;\n\r,\"\x80 *IDN?", 13);
    return pattern.repeated(1000).toStdString().substr(0, count);
}

struct reply_t
{
    const char *messages; // separated by |
    const char *reply;    // to the last one
    const char *errors;   // in the queue at the end
};

} // namespace

class test_sim_instrument : public QObject
{
    Q_OBJECT

private slots:
    void command_gets_its_exact_reply_and_errors_data();
    void command_gets_its_exact_reply_and_errors();
    void refused_message_changes_nothing();
    void vna_port_reaches_its_blocks_only();
    void full_error_queue_reports_its_overflow();
    void image_arrives_without_its_padding();
    void bad_transfer_is_refused_and_not_ready();
    void parameters_keep_their_raw_bytes();
    void foreign_instrument_knows_common_commands_only();
    void bad_fleet_names_the_place();
    void default_fleet_is_the_documented_one();
    void any_bytes_get_a_terminated_reply_or_an_error();
};

void test_sim_instrument::command_gets_its_exact_reply_and_errors_data()
{
    static const reply_t rows[] = {
        {"SHOW:MNAMe?;SER?;SVERsion?;TEMPerature?;PRODect:ID?", "TMX5044;SN1;1.0.0;36.5;44\n", ""},
        {"UPGRADE:ID?;:SHOW:SERial?\r\n", "44,-1,49,0;SN1\n", ""},
        {"*TST?;*OPC?;*WAI;*ESE 255;*ESE?", "0;1;255\n", ""},
        {"SYSTem:ERRor:NEXT?;:syst:err?", "0,\"No error\";0,\"No error\"\n", ""},
        {":ROUT?;ROUTES?;:show:temp?;*idn?", "0,0,0,0;0,0,0,0;36.5;TMX,TMX5044,SN1,1.0.0\n", ""},
        {"\r\n", "nothing", ""},
        // Header paths.
        {"ADD:ROUTe A13;*OPC?;ROUTe B1;:ROUTes?", "1;13,1,0,0\n", ""},
        {"ADD:ROUTe A13;ROUTe A14;ROUTe B5;ROUTe B0;ROUTe D0;:ROUTes?", "14,0,0,0\n", ""},
        {"SET:COLOR a , gReEn;:GET:COLOR? A;COLOR? D", "GREEN;GREEN\n", ""},
        // A command error ends the message, an execution error does not.
        {"*OPC?;FOO;*OPC?", "1\n", "-113"},
        {"FOO|*OPC?;:SYST:ERR?", "1;-113,\"Undefined header\"\n", ""},
        {"*OPC?;ADD:ROUTe A7;*OPC?", "1;1\n", "-222"},
        {"*OPC?;;*OPC?", "1\n", "-102"},
        // The status byte: error waiting, event summary, service.
        {"*ESR?|*ESE 48;*SRE 32|FOO|ADD:ROUTe A7|*STB?;*ESR?", "100;48\n", "-113 -222"},
        {"FOO|*CLS|*STB?;*ESR?;SYST:ERR?", "0;0;0,\"No error\"\n", ""},
        // The leased address hides the fixed one.
        {"SET:LAN:DHCP 1;IP 10.0.0.9|SHOW:LAN:IP?;SNM?;:SET:LAN:DHCP 0;:SHOW:LAN:IP?",
         "192.168.1.150;255.255.255.0;10.0.0.9\n", ""},
        // What survives.
        {"ADD:ROUTe A1;:SET:COLOR A,Red|*RST|ROUT?;:GET:COLOR? A", "0,0,0,0;RED\n", ""},
        {"ADD:ROUTe A1;:SET:LAN:DHCP 0|REBOOT|ROUT?;:SHOW:LAN:DHCP?", "0,0,0,0;0\n", ""},
        {"ADD:ROUTe A1;:SET:COLOR A,Red;:SET:LAN:DHCP 0|SYSTem:DEVice:DEFAULT|ROUT?;:GET:COLOR? "
         "A;:SHOW:LAN:DHCP?",
         "0,0,0,0;CYAN;1\n", ""},
        // Identity takes effect at the reboot; the switches follow a code of the family.
        {"SYSTem:DEVice:SERIAL:NUM X9|*IDN?", "TMX,TMX5044,SN1,1.0.0\n", ""},
        {"SYST:DEV:PRODUCTUG M|SYST:DEV:SERIAL:NUM X9|SYST:DEV:PRODUCTUG:ID 24|REBOOT|*IDN?;ROUT?",
         "TMX,M,X9,1.0.0;0,0\n", ""},
        {"SYSTem:DEVice:PRODUCTUG:ID 99|REBOOT|SHOW:PRODect:ID?;:ROUTes?", "99;0,0,0,0\n", ""},
        // The loader.
        {"REBOOT 1|UPREADY?;UPGRADE:ID?;*OPC?", "1;44,-1,49,0;1\n", ""},
        {"REBOOT 1|GET:COLOR? A|ROUTes?", "nothing", "-113 -113"},
        {"REBOOT 1|REBOOT|ROUTes?", "0,0,0,0\n", ""}};
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("errors");
    for (const reply_t &row : rows)
        QTest::newRow(row.messages) << QByteArray(row.reply) << QByteArray(row.errors);
}

void test_sim_instrument::command_gets_its_exact_reply_and_errors()
{
    sim::sim_instrument_t instrument(config_of(44));
    QByteArray reply;
    for (const QByteArray &message : QByteArray(QTest::currentDataTag()).split('|'))
        reply = answer(instrument, message.toStdString());
    QTEST(reply, "reply");
    QTEST(errors_of(instrument), "errors");
}

void test_sim_instrument::refused_message_changes_nothing()
{
    static const std::pair<const char *, QByteArrayList> refused[] = {
        {"-101", {"SHOW:MNAMe?\x01"}},
        {"-108", {"SET:COLOR A,Cyan,Red", "ROUTes? A", "ADD:ROUTe A1,B2"}},
        {"-109", {"SET:COLOR A,", "SET:COLOR A", "GET:COLOR?", "ADD:ROUTe"}},
        {"-113",
         {"SYSTE:ERR?", "SYST:ERR", "SYST:ERR:NEX?", "ROUTE?", "ROUTESS?", "::ROUT?", "ROUT:?",
          "IDN?", "*IDN", "*IDN ?", "SHOW:LAN?", "SHOW:LAN:SNMAS?", "ADD:ROUTeA1"}},
        {"-221", {"ADD:ROUTe B13"}},
        {"-222", {"ADD:ROUTe A7", "ADD:ROUTe A99", "*SRE 256"}},
        {"-224",
         {"ADD:ROUTe A", "ADD:ROUTe 13", "ADD:ROUTe A01", "ADD:ROUTe A-1", "ADD:ROUTe E1",
          "ADD:ROUTe A99999999999", "SET:COLOR E,Cyan", "SET:COLOR A,Pink"}},
        {"-224",
         {"SET:LAN:IP 192.168.1", "SET:LAN:IP 1.1.1.256", "SET:LAN:IP 1.1.1.1.1",
          "SET:LAN:IP 1.168..1", "SET:LAN:IP 0.1.2.3", "SET:LAN:IP 224.0.0.1", "SET:LAN:IP 1.2.3.x",
          "SET:LAN:IP 1.2.3.-4", "SET:LAN:GW 300.1.1.1", "SET:LAN:SNM 255.0.255.0",
          "SET:LAN:SNM 0.0.0.0", "SET:LAN:DHCP ON", "SET:LAN:HOST:NAM -lab", "SET:LAN:HOST:NAM a_7",
          "SET:LAN:MAC:ADDR 0a:1b", "SET:LAN:MAC:ADDR 0a:1b:2c:3d:4e:5g"}}};
    const std::string ask(
        "ROUTes?;:GET:COLOR? A;:SHOW:LAN:IP?;SNM?;GW?;DHCP?;MAC:ADDR?;:SHOW:LAN:HOST:NAM?");
    const QByteArray kept("13,5,0,0;RED;1.20.3.4;255.254.0.0;0.0.0.0;0;0A:1B:2C:3D:4E:5F;a-7.b\n");
    auto config = config_of(44);
    config.routes = {"A13", "B5"};
    sim::sim_instrument_t instrument(config);
    instrument.receive("SET:COLOR A,Red;:SET:LAN:DHCP 0;IP 001.020.3.4;SNM 255.254.0.0");
    instrument.receive("SET:LAN:HOST:NAMe a-7.b;:SET:LAN:GW 0.0.0.0;MAC:ADDR 0a-1b-2C-3d-4e-5f");
    QCOMPARE(answer(instrument, ask), kept);
    for (const auto &[errors, messages] : refused) {
        for (const QByteArray &message : messages) {
            instrument.receive("*CLS");
            QVERIFY2(answer(instrument, message.toStdString()) == "nothing", message);
            QCOMPARE(message + ": " + errors_of(instrument), message + ": " + errors);
            QCOMPARE(answer(instrument, ask), kept);
        }
    }
}

void test_sim_instrument::vna_port_reaches_its_blocks_only()
{
    struct reach_t
    {
        int product;
        std::string ports;
        QList<int> blocks; // first port of each block of six
    };
    static const reach_t rows[] = {
        {21, "AB", {1}}, {22, "AB", {1, 7}}, {24, "AB", {1, 7, 13, 19}}, {24, "CD", {}},
        {42, "AB", {1}}, {42, "CD", {7}},    {44, "AB", {1, 13}},        {44, "CD", {7, 19}}};
    for (const reach_t &row : rows) {
        for (int label = 1; label <= 25; ++label) {
            for (const char port : row.ports) {
                const std::string route = port + std::to_string(label);
                sim::sim_instrument_t instrument(config_of(row.product));
                instrument.receive("ADD:ROUTe " + route);
                const bool reachable = row.blocks.contains((label - 1) / 6 * 6 + 1);
                QVERIFY2(errors_of(instrument) == (reachable ? "" : "-222"), route.c_str());
                const QByteArray routes = answer(instrument, "ROUTes?");
                QCOMPARE(routes.contains(QByteArray::number(label)), reachable);
            }
        }
    }
}

void test_sim_instrument::full_error_queue_reports_its_overflow()
{
    sim::sim_instrument_t instrument(config_of(44));
    for (int error = 0; error < 25; ++error)
        instrument.receive("FOO");
    QCOMPARE(errors_of(instrument), QByteArray("-113 ").repeated(19) + "-350");
}

void test_sim_instrument::image_arrives_without_its_padding()
{
    for (const std::size_t bytes : {1, 2048, 2049, 10000}) {
        const std::string image = binary_bytes(bytes);
        sim::sim_instrument_t instrument(config_of(44));
        instrument.receive(std::string("REBOOT 1\0", 9));
        instrument.receive("HOSTUG " + std::to_string(bytes));
        for (std::size_t start = 0; start < bytes; start += 2048) {
            QCOMPARE(answer(instrument, "UPREADY?"), "1\n");
            QCOMPARE(answer(instrument, block_of(image.substr(start, 2048))), "nothing");
        }
        QCOMPARE(errors_of(instrument), QByteArray());
        const auto &images = instrument.inspect().firmware.images();
        QCOMPARE(images.size(), std::size_t{1});
        QVERIFY(images[0].kind == sim::image_kind_t::host && images[0].bytes == image);
    }
}

void test_sim_instrument::bad_transfer_is_refused_and_not_ready()
{
    const QByteArray block = QByteArray::fromStdString(block_of("x"));
    const std::pair<QByteArrayList, const char *> rows[] = {
        {{"HOSTUG 5"}, "-221"}, // without the loader
        {{block}, "-200"},
        {{"BOOTUG 5", "BOOTUG 0", block}, "-222 -200"},
        {{"BOOTUG 2048", block, block}, "-223"},
        {{"BOOTUG 5", block.left(2055)}, "-161"},
        {{"BOOTUG 6", block + "x"}, "-161"},
        {{"BOOTUG 0x10"}, "-224"}};
    for (const auto &[messages, errors] : rows) {
        sim::sim_instrument_t instrument(config_of(44));
        for (const QByteArray &message : messages)
            instrument.receive(message.toStdString());
        QCOMPARE(errors_of(instrument), QByteArray(errors));
        QCOMPARE(answer(instrument, "UPREADY?"), "0\n");
        instrument.receive("BOOTUG 5");
        QCOMPARE(answer(instrument, "UPREADY?"), "1\n");
    }
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
}

void test_sim_instrument::foreign_instrument_knows_common_commands_only()
{
    sim::instrument_config_t config;
    config.foreign_identity = "MAKER,FG,1,2";
    sim::sim_instrument_t instrument(config);
    QCOMPARE(answer(instrument, "*IDN?;*OPC?"), "MAKER,FG,1,2;1\n");
    for (const char *message : {"ROUTes?", "REBOOT", "SYSTem:DEVice:PIDUG 1"})
        QVERIFY(instrument.receive(message).effect == instrument_effect_t::none);
    QCOMPARE(errors_of(instrument), "-113 -113 -113");
}

void test_sim_instrument::bad_fleet_names_the_place()
{
    const std::string start = R"({"instruments":[{"product":44,"serial":"S","resources":["R"],)";
    const std::pair<std::string, const char *> rows[] = {
        {"{", "parse error"},
        {R"({"reboot":1})", "fleet.reboot: "},
        {R"({"instruments":[{"product":44,"serial":"S"}]})", "fleet.instruments[0]: "},
        {start + R"("product":43}]})", "[0].product: "},
        {start + R"("routes":{"A":1,"B":1}}]})", "[0].routes.B: Settings conflict"},
        {start + R"("lan":{"ip":"1.2.3"}}]})", "[0].lan.ip: "}};
    for (const auto &[json, place] : rows) {
        try {
            sim::parse_fleet(json);
            QFAIL(json.c_str());
        } catch (const sim::fleet_error_t &error) {
            QVERIFY2(QByteArray(error.what()).contains(place), error.what());
        }
    }
}

void test_sim_instrument::default_fleet_is_the_documented_one()
{
    QByteArrayList lines;
    for (const auto &entry : sim::default_fleet().instruments) {
        sim::sim_instrument_t instrument(entry.config);
        lines.append(QByteArray::fromStdString(entry.resources.at(0)) + " " +
                     answer(instrument, "*IDN?;:ROUTes?").trimmed());
    }
    QCOMPARE(lines.size(), 8);
    for (const char *line :
         {"USB0::0xA17E::0x2000::SN44001::INSTR TMX,TMX5044,SN44001,1.0.0;0,14,9,0",
          "USB0::0x0A11::0x0588::FG1014::INSTR ORBITAL TEST,FG1014,FG1014000271,2.07",
          "TCPIP0::127.0.0.2::INSTR TMX,TMX5024,SN24002,1.0.0;0,0"})
        QVERIFY2(lines.contains(line), line);
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
