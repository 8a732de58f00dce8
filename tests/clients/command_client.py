# SPDX-License-Identifier: MIT
"""What the simulated instrument answers to each command, asked by pyvisa, which others wrote.

To be run by corvane-sim-run, which makes pyvisa take the simulator's VISA library.
"""

import ctypes
import json
import unittest

import pyvisa

NAME = "USB0::0xA17E::0x2000::SN1::INSTR"

# Messages separated by |, the reply to the last one, and the errors in the queue at the end.
ANSWERS = [
    ("SHOW:MNAMe?;SER?;SVERsion?;TEMPerature?;PRODect:ID?", "TMX5044;SN1;1.0.0;36.5;44\n", ""),
    ("UPGRADE:ID?;:SHOW:SERial?\r\n", "44,-1,49,0;SN1\n", ""),
    ("*TST?;*OPC?;*WAI;*ESE 255;*ESE?", "0;1;255\n", ""),
    ("SYSTem:ERRor:NEXT?;:syst:err?", "0,\"No error\";0,\"No error\"\n", ""),
    (":ROUT?;ROUTES?;:show:temp?;*idn?", "0,0,0,0;0,0,0,0;36.5;TMX,TMX5044,SN1,1.0.0\n", ""),
    ("\r\n", "nothing", ""),
    # Header paths.
    ("ADD:ROUTe A13;*OPC?;ROUTe B1;:ROUTes?", "1;13,1,0,0\n", ""),
    ("ADD:ROUTe A13;ROUTe A14;ROUTe B5;ROUTe B0;ROUTe D0;:ROUTes?", "14,0,0,0\n", ""),
    ("SET:COLOR a , gReEn;:GET:COLOR? A;COLOR? D", "GREEN;GREEN\n", ""),
    # A command error ends the message, an execution error does not.
    ("*OPC?;FOO;*OPC?", "1\n", "-113"),
    ("FOO|*OPC?;:SYST:ERR?", "1;-113,\"Undefined header\"\n", ""),
    ("*OPC?;ADD:ROUTe A7;*OPC?", "1;1\n", "-222"),
    ("*OPC?;;*OPC?", "1\n", "-102"),
    # The status byte: error waiting, event summary, service.
    ("*ESR?|*ESE 48;*SRE 32|FOO|ADD:ROUTe A7|*STB?;*ESR?", "100;48\n", "-113 -222"),
    ("FOO|*CLS|*STB?;*ESR?;SYST:ERR?", "0;0;0,\"No error\"\n", ""),
    # The leased address hides the fixed one.
    ("SET:LAN:DHCP 1;IP 10.0.0.9|SHOW:LAN:IP?;SNM?;:SET:LAN:DHCP 0;:SHOW:LAN:IP?",
     "192.168.1.150;255.255.255.0;10.0.0.9\n", ""),
    # What survives.
    ("ADD:ROUTe A1;:SET:COLOR A,Red|*RST|ROUT?;:GET:COLOR? A", "0,0,0,0;RED\n", ""),
    ("ADD:ROUTe A1;:SET:LAN:DHCP 0|REBOOT|ROUT?;:SHOW:LAN:DHCP?", "0,0,0,0;0\n", ""),
    ("ADD:ROUTe A1;:SET:COLOR A,Red;:SET:LAN:DHCP 0|SYSTem:DEVice:DEFAULT|ROUT?;:GET:COLOR? A;:SHOW:LAN:DHCP?",
     "0,0,0,0;CYAN;1\n", ""),
    # Identity takes effect at the reboot; the switches follow a code of the family.
    ("SYSTem:DEVice:SERIAL:NUM X9|*IDN?", "TMX,TMX5044,SN1,1.0.0\n", ""),
    ("SYST:DEV:PRODUCTUG M|SYST:DEV:SERIAL:NUM X9|SYST:DEV:PRODUCTUG:ID 24|REBOOT|*IDN?;ROUT?",
     "TMX,M,X9,1.0.0;0,0\n", ""),
    ("SYSTem:DEVice:PRODUCTUG:ID 99|REBOOT|SHOW:PRODect:ID?;:ROUTes?", "99;0,0,0,0\n", ""),
    # The loader.
    ("REBOOT 1|UPREADY?;UPGRADE:ID?;*OPC?", "1;44,-1,49,0;1\n", ""),
    ("REBOOT 1|GET:COLOR? A|ROUTes?", "nothing", "-113 -113"),
    ("REBOOT 1|REBOOT|ROUTes?", "0,0,0,0\n", ""),
]

# Messages by the error that they give, and nothing else.
REFUSED = {
    "-101": [
        "SHOW:MNAMe?\x01",
    ],
    "-108": [
        "SET:COLOR A,Cyan,Red", "ROUTes? A", "ADD:ROUTe A1,B2",
    ],
    "-109": [
        "SET:COLOR A,", "SET:COLOR A", "GET:COLOR?", "ADD:ROUTe",
    ],
    "-113": [
        "SYSTE:ERR?", "SYST:ERR", "SYST:ERR:NEX?", "ROUTE?", "ROUTESS?", "::ROUT?", "ROUT:?",
        "IDN?", "*IDN", "*IDN ?", "SHOW:LAN?", "SHOW:LAN:SNMAS?", "ADD:ROUTeA1",
    ],
    "-221": [
        "ADD:ROUTe B13",
    ],
    "-222": [
        "ADD:ROUTe A7", "ADD:ROUTe A99", "*SRE 256",
    ],
    "-224": [
        "ADD:ROUTe A", "ADD:ROUTe 13", "ADD:ROUTe A01", "ADD:ROUTe A-1", "ADD:ROUTe E1",
        "ADD:ROUTe A99999999999", "SET:COLOR E,Cyan", "SET:COLOR A,Pink", "SET:LAN:IP 192.168.1",
        "SET:LAN:IP 1.1.1.256", "SET:LAN:IP 1.1.1.1.1", "SET:LAN:IP 1.168..1",
        "SET:LAN:IP 0.1.2.3", "SET:LAN:IP 224.0.0.1", "SET:LAN:IP 1.2.3.x", "SET:LAN:IP 1.2.3.-4",
        "SET:LAN:GW 300.1.1.1", "SET:LAN:SNM 255.0.255.0", "SET:LAN:SNM 0.0.0.0",
        "SET:LAN:DHCP ON", "SET:LAN:HOST:NAM -lab", "SET:LAN:HOST:NAM a_7",
        "SET:LAN:MAC:ADDR 0a:1b", "SET:LAN:MAC:ADDR 0a:1b:2c:3d:4e:5g",
    ],
}
SETTINGS = (
    "ROUTes?;:GET:COLOR? A;:SHOW:LAN:IP?;SNM?;GW?;DHCP?;MAC:ADDR?;:SHOW:LAN:HOST:NAM?",
    "13,5,0,0;RED;1.20.3.4;255.254.0.0;0.0.0.0;0;0A:1B:2C:3D:4E:5F;a-7.b\n",
)

# Products, some of their VNA ports, and the first test port of each block of six in their reach.
REACH = [(21, "AB", [1]), (22, "AB", [1, 7]), (24, "AB", [1, 7, 13, 19]), (24, "CD", []),
         (42, "AB", [1]), (42, "CD", [7]), (44, "AB", [1, 13]), (44, "CD", [7, 19])]


class CommandClient(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.manager = pyvisa.ResourceManager()
        cls.addClassCleanup(cls.manager.close)
        cls.simulator = ctypes.CDLL(str(cls.manager.visalib.library_path))

    def switch_on(self, product=44, **routes):
        fleet = {"reboot_ms": 0, "instruments": [
            {"product": product, "serial": "SN1", "upgrade_id": [44, -1, 49, 0],
             "routes": routes, "resources": [NAME]}]}
        text = json.dumps(fleet).encode()
        self.assertEqual(self.simulator.corvane_sim_load_fleet(text), 0)

    def answer(self, message):
        """The reply to a message, in a session of its own; a reboot ends it."""
        with self.manager.open_resource(NAME) as instrument:
            instrument.write_raw(message.encode())
            if message.startswith("REBOOT") or not instrument.read_stb() & 0x10:
                return "nothing"
            return instrument.read_raw().decode()

    def errors(self):
        codes = []
        while (error := self.answer("SYST:ERR?").split(",")[0]) not in ("0", "nothing"):
            codes.append(error)
        return " ".join(codes)

    def test_command_gets_its_exact_reply_and_errors(self):
        for messages, expected, errors in ANSWERS:
            with self.subTest(messages):
                self.switch_on()
                for message in messages.split("|"):
                    reply = self.answer(message)
                self.assertEqual((reply, self.errors()), (expected, errors))

    def test_refused_message_changes_nothing(self):
        self.switch_on(A=13, B=5)
        self.answer("SET:COLOR A,Red;:SET:LAN:DHCP 0;IP 001.020.3.4;SNM 255.254.0.0")
        self.answer("SET:LAN:HOST:NAMe a-7.b;:SET:LAN:GW 0.0.0.0;MAC:ADDR 0a-1b-2C-3d-4e-5f")
        for error, messages in REFUSED.items():
            for message in messages:
                with self.subTest(message):
                    self.assertEqual((self.answer(message), self.errors()), ("nothing", error))
                    self.assertEqual(self.answer(SETTINGS[0]), SETTINGS[1])

    def test_vna_port_reaches_its_blocks_only(self):
        for product, ports, blocks in REACH:
            for label in range(1, 26):
                for port in ports:
                    with self.subTest(product=product, route=f"{port}{label}"):
                        self.switch_on(product)
                        self.answer(f"ADD:ROUTe {port}{label}")
                        is_reached = (label - 1) // 6 * 6 + 1 in blocks
                        self.assertEqual(self.errors(), "" if is_reached else "-222")
                        routes = self.answer("ROUTes?").strip().split(",")
                        self.assertEqual(str(label) in routes, is_reached)


if __name__ == "__main__":
    unittest.main()
