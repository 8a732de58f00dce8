# SPDX-License-Identifier: MIT
"""What clients that others wrote, pyvisa-py and lxi-tools, and hostile ones make of `corvane-sim lan`.

Run by scripts/test-clients in a network namespace of its own; CORVANE_SIM is the program. CLIENT_VISA
is the VISA library that pyvisa uses, pyvisa-py without it.
"""

import json
import os
import socket
import struct
import subprocess
import tempfile
import threading
import time
import unittest

import pyvisa
from pyvisa_py.protocols import rpc, vxi11

FLEET = {
    "reboot_ms": 200,
    "instruments": [
        {"product": 44, "serial": "SN1", "resources": ["TCPIP0::127.0.0.1::INSTR"]},
        {"product": 24, "serial": "SN2", "resources": ["TCPIP0::127.0.0.2::INSTR"],
         "response_delay_ms": 400},
        {"product": 21, "serial": "SN3", "resources": ["TCPIP0::192.0.2.1::INSTR"]},
    ],
}
IDENTITY = "TMX,TMX5044,SN1,1.0.0"


def setUpModule():
    global simulator, manager
    with tempfile.NamedTemporaryFile("w", suffix=".json") as fleet:
        json.dump(FLEET, fleet)
        fleet.flush()
        simulator = subprocess.Popen(
            [os.environ["CORVANE_SIM"], "lan", "--fleet", fleet.name],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        for host in ("127.0.0.1", "127.0.0.2"):
            line = simulator.stdout.readline()
            assert line.startswith(f"TCPIP0::{host}::INSTR: VXI-11 on port "), line
    manager = pyvisa.ResourceManager(os.environ.get("CLIENT_VISA", "@py"))


def tearDownModule():
    # Also while a client waits.
    with connect(5025, "127.0.0.2") as waiting:
        waiting.sendall(b"*IDN?\n")
        simulator.terminate()
        assert simulator.wait(5) == 0, simulator.returncode


def connect(port, host="127.0.0.1"):
    return socket.create_connection((host, port), timeout=5)


def lxi(*arguments):
    done = subprocess.run(["lxi", *arguments], capture_output=True, text=True, timeout=60)
    return done.stdout.strip()


def core_port():
    """Asks the port mapper, with the call in four fragments."""
    call = struct.pack(">14I", 9, 0, 2, 100000, 2, 3, 0, 0, 0, 0, 395183, 1, 6, 0)
    pieces = [call[:3], call[3:20], b"", call[20:]]
    with connect(111) as peer:
        for piece in pieces[:-1]:
            peer.sendall(struct.pack(">I", len(piece)) + piece)
        peer.sendall(struct.pack(">I", 0x80000000 | len(pieces[-1])) + pieces[-1])
        return struct.unpack(">I", receive(peer, 32)[-4:])[0]


def receive(peer, count):
    received = b""
    while len(received) < count:
        part = peer.recv(count - len(received))
        assert part, "the connection was closed"
        received += part
    return received


def descriptors(expected=0):
    """How many the simulator has open; waits for it to close those that are gone."""
    for _ in range(50):
        count = len(os.listdir(f"/proc/{simulator.pid}/fd"))
        if count == expected:
            break
        time.sleep(0.02)
    return count


def memory_kib():
    with open(f"/proc/{simulator.pid}/statm") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


class Clients(unittest.TestCase):
    def open(self, host="127.0.0.1", **options):
        instrument = manager.open_resource(f"TCPIP0::{host}::INSTR", **options)
        self.addCleanup(instrument.close)
        return instrument

    def assert_fails(self, code, action):
        with self.assertRaises(pyvisa.errors.VisaIOError) as failure:
            action()
        self.assertEqual(failure.exception.error_code, code)

    def test_lxi_tools_find_and_ask(self):
        self.assertIn(f'"{IDENTITY}" on address 127.0.0.1', lxi("discover"))
        for options in ((), ("-r",)):
            self.assertEqual(lxi("scpi", *options, "-a", "127.0.0.1", "*IDN?"), IDENTITY)
            result = lxi("benchmark", *options, "-a", "127.0.0.1", "-c", "500")
            self.assertGreater(float(result.split("Result: ")[1].split()[0]), 100)

    def test_reply_in_chunks(self):
        instrument = self.open()
        for size in (1, 4, 20):
            instrument.write("*IDN?")
            self.assertEqual(instrument.read_bytes(22, size), IDENTITY.encode() + b"\n")
        for size in (4, 20):
            instrument.chunk_size = size
            self.assertEqual(instrument.query("*IDN?"), IDENTITY + "\n")
        instrument.write("ROUTes?")
        instrument.read_termination = ","
        self.assertEqual([instrument.read() for _ in range(3)], ["0"] * 3)
        instrument.read_termination = ""
        self.assertEqual(instrument.read(), "0\n")

    def test_late_reply_is_not_taken_for_the_next(self):
        instrument = self.open("127.0.0.2", timeout=100)
        self.assert_fails(pyvisa.constants.VI_ERROR_TMO, lambda: instrument.query("ROUTes?"))
        instrument.timeout = 2000
        self.assertEqual(instrument.query("*IDN?"), "TMX,TMX5024,SN2,1.0.0\n")
        # On a fresh link there is no reply to interrupt.
        links_anew = "CLIENT_VISA" in os.environ
        error = '0,"No error"\n' if links_anew else '-410,"Query INTERRUPTED"\n'
        self.assertEqual(instrument.query("SYST:ERR?"), error)

    def test_long_write_arrives_whole(self):
        instrument = self.open()
        instrument.write("*CLS;" * 1000 + "ADD:ROUTe D8")
        self.assertEqual(instrument.query("SYST:ERR?;:ROUTes?"), '0,"No error";0,0,0,8\n')
        instrument.write("*RST")

    def test_clear_status_and_trigger(self):
        instrument = self.open(timeout=100)
        instrument.write("ROUTes?")
        self.assertEqual(instrument.read_stb() & 16, 16)
        instrument.clear()
        self.assertEqual(instrument.read_stb() & 16, 0)
        self.assert_fails(pyvisa.constants.VI_ERROR_TMO, instrument.read)
        instrument.assert_trigger()
        self.assertEqual(
            instrument.query("SYST:ERR?;ERR?"), '-420,"Query UNTERMINATED";0,"No error"\n')

    def test_lock_keeps_a_second_link_out(self):
        owner, other = self.open(), self.open()
        owner.lock_excl()
        with self.assertRaises(pyvisa.errors.VisaIOError):
            other.query("*IDN?")
        self.assertEqual(owner.query("*IDN?"), IDENTITY + "\n")
        owner.unlock()
        self.assertEqual(other.query("*IDN?"), IDENTITY + "\n")
        owner.lock_excl()
        owner.close()  # without unlocking
        other.lock_excl()
        other.unlock()

    def test_two_clients_see_one_instrument(self):
        raw = pyvisa.ResourceManager("@py").open_resource("TCPIP0::127.0.0.1::5025::SOCKET", read_termination="\n")
        self.addCleanup(raw.close)
        self.open().write("ADD:ROUTe B14")
        self.assertEqual(raw.query("ROUTes?"), "0,14,0,0")
        raw.write("*RST\n*IDN?\nROUTes?")
        self.assertEqual([raw.read(), raw.read()], [IDENTITY, "0,0,0,0"])

    def test_only_what_is_there_can_be_opened(self):
        for name in ("TCPIP0::127.0.0.1::inst1::INSTR", "TCPIP0::127.0.0.3::INSTR"):
            with self.assertRaises(Exception):
                manager.open_resource(name).query("*IDN?")
        instrument = self.open()
        instrument.write("ADD:ROUTe A1")
        instrument.write("REBOOT")
        with self.assertRaises(Exception):
            instrument.query("*IDN?")
        time.sleep(0.3)
        self.assertEqual(self.open().query("ROUTes?"), "0,0,0,0\n")

    def test_port_that_is_taken_is_named(self):
        second = subprocess.run([os.environ["CORVANE_SIM"], "lan"], capture_output=True, text=True)
        self.assertEqual((second.returncode, second.stdout), (1, ""))
        for text in ("127.0.0.1, port 111: ", "unshare -r -n", "setcap cap_net_bind_service"):
            self.assertIn(text, second.stderr)


class Links(unittest.TestCase):
    """Calls of the core channel, one by one, and the error that each ends in."""

    def setUp(self):
        (self.owner, self.link), (self.other, self.others) = self.open(), self.open()

    def open(self, host="127.0.0.1"):
        client = vxi11.CoreClient(host)
        self.addCleanup(client.close)
        error, link, self.abort_port, _ = client.create_link(1, False, 0, "inst0")
        self.assertEqual(error, 0)
        return client, link

    def test_call_that_is_not_served_is_refused(self):
        for device in ("inst1", "", "inst", "inst00", "gpib0,5"):
            self.assertEqual(self.owner.create_link(1, False, 0, device)[0], 3)
        generic = self.link, 0, 0, 0
        self.assertEqual(self.other.device_trigger(*generic), 4)  # a link of another connection
        self.assertEqual(self.owner.device_remote(*generic), 8)
        self.assertEqual(self.owner.device_local(*generic), 8)
        self.assertEqual(self.owner.device_enable_srq(self.link, True, b""), 8)
        # Longer than any message: refused, and forgotten.
        much = b" " * 500_000
        errors = [self.owner.device_write(self.link, 0, 0, 0, much)[0] for _ in range(3)]
        self.assertEqual(errors, [0, 0, 17])
        self.assertEqual(self.owner.device_write(self.link, 0, 0, 8, b"ROUTes?")[0], 0)
        self.assertEqual(self.owner.device_read(self.link, 100, 500, 0, 0, 0), (0, 4, b"0,0,0,0\n"))

    def test_lock_is_for_one_link(self):
        self.assertEqual(self.owner.device_lock(self.link, 0, 0), 0)
        generic = self.others, 0, 30, 30
        for wait in (0, 1):
            self.assertEqual(self.other.device_lock(self.others, wait, 30), 11)
        self.assertEqual(self.other.device_read(self.others, 9, 30, 30, 0, 0)[0], 11)
        self.assertEqual(self.other.device_read_stb(*generic)[0], 11)
        self.assertEqual(self.other.device_trigger(*generic), 11)
        self.assertEqual(self.other.device_clear(*generic), 11)
        self.assertEqual(self.other.device_unlock(self.others), 12)
        self.assertEqual(self.other.create_link(1, True, 30, "inst0")[0], 11)
        self.assertEqual(self.owner.device_unlock(self.link), 0)
        error, third, _, _ = self.other.create_link(1, True, 30, "inst0")
        self.assertEqual((error, self.owner.device_lock(self.link, 0, 0)), (0, 11))
        self.assertEqual(self.other.destroy_link(third), 0)
        self.assertEqual(self.owner.device_lock(self.link, 0, 0), 0)

    def test_abort_ends_the_wait_of_its_link_only(self):
        client, link = self.open("127.0.0.2")
        abort = rpc.RawTCPClient("127.0.0.2", 395184, 1, self.abort_port, 5000)
        self.addCleanup(abort.close)
        abort.packer, abort.unpacker = vxi11.Vxi11Packer(), vxi11.Vxi11Unpacker("")
        client.device_write(link, 0, 0, 8, b"ROUTes?")
        results = []
        read = threading.Thread(
            target=lambda: results.append(client.device_read(link, 99, 9000, 0, 0, 0)[0]))
        read.start()
        time.sleep(0.1)
        for number, error in ((link + 99, 4), (link, 0)):
            self.assertEqual(abort.make_call(1, number, abort.packer.pack_device_link,
                                             abort.unpacker.unpack_device_error), error)
        read.join(5)
        self.assertEqual(results, [23])
        self.assertEqual(client.device_read(link, 99, 9000, 0, 0, 0), (0, 4, b"0,0\n"))

    def test_port_mapper_knows_this_protocol_only(self):
        mapper = rpc.TCPPortMapperClient("127.0.0.1")
        self.addCleanup(mapper.close)
        ports = [mapper.get_port((395183, version, protocol, 0))
                 for version, protocol in ((1, 6), (1, 17), (2, 6))]
        self.assertEqual([port > 0 for port in ports], [True, False, False])


class HostileClients(unittest.TestCase):
    def setUp(self):
        self.port = core_port()

    def tearDown(self):
        self.assertEqual(lxi("scpi", "-a", "127.0.0.1", "*IDN?"), IDENTITY)

    def test_bad_stream_is_closed(self):
        for stream in (struct.pack(">I", 0xFFFFFFFF), b"\x7f\xff\xff\xffabc", b"\x80\0\0\x02ab"):
            with connect(self.port) as peer:
                peer.sendall(stream)
                self.assertEqual(peer.recv(1), b"")

    def test_flood_and_silence_cost_no_memory(self):
        before = memory_kib()
        null_call = struct.pack(">I10I", 0x80000028, 9, 0, 2, 395183, 1, 0, 0, 0, 0, 0)
        peers = [connect(self.port) for _ in range(100)]
        for number, peer in enumerate(peers):
            peer.setblocking(False)
            # Half a long record, or calls without end whose answers nobody reads.
            stream = b"\x80\x0f\xff\xff" + b"x" * 20000 if number % 2 else null_call * 50000
            try:
                while stream:
                    stream = stream[peer.send(stream):]
            except BlockingIOError:
                pass
        self.assertEqual(lxi("scpi", "-a", "127.0.0.1", "*IDN?"), IDENTITY)
        self.assertLess(memory_kib() - before, 100 * 256)
        for peer in peers:
            peer.close()

    def test_ten_thousand_connections_leave_nothing(self):
        create = struct.pack(">I14I", 0x80000038, 9, 0, 2, 395183, 1, 10, 0, 0, 0, 0,
                             1, 0, 0, 5) + b"inst0\0\0\0"
        create = struct.pack(">I", 0x80000000 | (len(create) - 4)) + create[4:]
        write = struct.pack(">I", 0x80000100) + b"\0" * 100
        streams = [b"", create, create + write, b"\x80\0", write]

        def connect_often(times):
            for number in range(times):
                with connect(5025 if number % 7 == 0 else self.port) as peer:
                    peer.sendall(streams[number % len(streams)])
                    if number % len(streams) == 1 and number % 7:
                        receive(peer, 44)

        connect_often(1000)
        before = descriptors(), memory_kib()
        connect_often(10000)
        lxi("scpi", "-a", "127.0.0.1", "*IDN?")
        self.assertEqual(descriptors(before[0]), before[0])
        self.assertLess(memory_kib() - before[1], 512)


if __name__ == "__main__":
    unittest.main()
