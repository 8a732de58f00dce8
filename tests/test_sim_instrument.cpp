// SPDX-License-Identifier: MIT
#include "sim/instrument/sim_instrument.h"

#include <QtTest/QTest>

#include <string>
#include <utility>

namespace {

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

} // namespace

class test_sim_instrument : public QObject
{
    Q_OBJECT

private slots:
    void command_gets_its_exact_reply_and_errors();
    void refused_message_changes_nothing();
    void vna_port_reaches_its_blocks_only();
};

void test_sim_instrument::command_gets_its_exact_reply_and_errors()
{
    // Messages separated by |, the reply to the last one, and the errors in the queue at the end.
    const char *const rows[][3] = {
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
    for (const auto &[messages, expected, errors] : rows) {
        sim::sim_instrument_t instrument(config_of(44));
        QByteArray reply;
        for (const QByteArray &message : QByteArray(messages).split('|'))
            reply = answer(instrument, message.toStdString());
        QVERIFY2(reply == expected, messages + (": " + reply));
        QVERIFY2(errors_of(instrument) == errors, messages);
    }
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
    const struct
    {
        int product;
        std::string ports;
        QList<int> blocks; // first port of each block of six
    } rows[] = {{21, "AB", {1}},     {22, "AB", {1, 7}}, {24, "AB", {1, 7, 13, 19}},
                {24, "CD", {}},      {42, "AB", {1}},    {42, "CD", {7}},
                {44, "AB", {1, 13}}, {44, "CD", {7, 19}}};
    for (const auto &row : rows) {
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

QTEST_APPLESS_MAIN(test_sim_instrument)
#include "test_sim_instrument.moc"
