# SPDX-License-Identifier: MIT
"""pyvisa, which others wrote, on the simulated instruments' VISA library.

To be run by corvane-sim-run, which makes pyvisa take that library.
"""

import time
import unittest
import warnings

import pyvisa
from pyvisa.constants import (
    AccessModes,
    EventMechanism,
    EventType,
    InterfaceType,
    ResourceAttribute,
    StatusCode,
)

USB = "USB0::0xA17E::0x2000::SN44001::INSTR"
LAN = "TCPIP0::127.0.0.2::INSTR"
IDENTITY = "TMX,TMX5044,SN44001,1.0.0"


class VisaClient(unittest.TestCase):
    def setUp(self):
        self.manager = pyvisa.ResourceManager()
        self.addCleanup(self.manager.close)
        self.instrument = self.open(USB)

    def open(self, name, **settings):
        instrument = self.manager.open_resource(
            name, read_termination="\n", write_termination="\n", **settings
        )
        self.addCleanup(instrument.close)
        return instrument

    def fails(self, status, call, *arguments, **settings):
        with self.assertRaises(pyvisa.VisaIOError) as caught:
            call(*arguments, **settings)
        self.assertEqual(caught.exception.error_code, status)

    def test_the_simulator_is_the_library_that_is_found(self):
        maker = ResourceAttribute.resource_manufacturer_name
        for holder in (self.manager.session, self.instrument.session):
            self.assertEqual(
                self.manager.visalib.get_attribute(holder, maker)[0],
                "Corvane simulated instruments",
            )

    def test_instruments_are_listed_and_described(self):
        self.assertEqual(len(self.manager.list_resources()), 8)
        self.assertEqual(
            self.manager.list_resources("TCPIP?*"),
            ("TCPIP0::127.0.0.1::INSTR", "TCPIP0::127.0.0.2::INSTR"),
        )
        self.assertEqual(self.manager.list_resources("GPIB?*"), ())
        info = self.manager.resource_info("usb::41342::8192::SN44001")
        self.assertEqual(
            (info.interface_type, info.interface_board_number, info.resource_class),
            (InterfaceType.usb, 0, "INSTR"),
        )
        self.assertEqual((info.resource_name, info.alias), (USB, None))

    def test_query_in_chunks_of_any_size(self):
        for chunk in (1, 4, 20, 20480):
            self.instrument.chunk_size = chunk
            self.assertEqual(self.instrument.query("*IDN?"), IDENTITY)
            self.instrument.write("*IDN?")
            self.assertEqual(self.instrument.read_raw(), (IDENTITY + "\n").encode())

    def test_terminators(self):
        self.instrument.write_termination = ""
        self.instrument.read_termination = None
        self.assertEqual(self.instrument.query("*IDN?"), IDENTITY + "\n")
        self.instrument.write_termination = "\r\n"
        self.instrument.read_termination = ","
        self.instrument.write("*IDN?")
        self.assertEqual([self.instrument.read() for _ in range(3)], IDENTITY.split(",")[:3])
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")  # the last reply ends without the terminator
            self.assertEqual(self.instrument.read(), "1.0.0\n")

    def test_time_out_and_a_good_query_behind_it(self):
        self.instrument.timeout = 80
        start = time.monotonic()
        self.fails(StatusCode.error_timeout, self.instrument.read)
        self.assertGreaterEqual(time.monotonic() - start, 0.08)
        self.assertEqual(self.instrument.query("*IDN?"), IDENTITY)
        self.assertEqual(self.instrument.query("SYST:ERR?"), '-420,"Query UNTERMINATED"')

    def test_clear_and_status_byte(self):
        self.instrument.write("*IDN?")
        self.assertEqual(self.instrument.read_stb(), 0x10)
        self.instrument.clear()
        self.assertEqual(self.instrument.read_stb(), 0)
        self.instrument.write("NO:SUCH")
        self.assertEqual(self.instrument.read_stb(), 0x04)
        self.assertEqual(self.instrument.query("SYST:ERR?"), '-113,"Undefined header"')

    def test_locks_against_a_second_session(self):
        other = self.open(USB)
        with self.instrument.lock_context(timeout=100):
            self.fails(StatusCode.error_resource_locked, other.query, "*IDN?")
            self.fails(StatusCode.error_timeout, other.lock_excl, timeout=50)
            self.assertEqual(self.instrument.query("*IDN?"), IDENTITY)
        self.assertEqual(other.query("*IDN?"), IDENTITY)
        with self.instrument.lock_context(timeout=100, requested_key="bench") as key:
            other.lock(timeout=100, requested_key=key)
            self.assertEqual(other.query("*IDN?"), IDENTITY)
            other.unlock()
            self.fails(StatusCode.error_resource_locked, other.query, "*IDN?")
        self.fails(StatusCode.error_session_not_locked, other.unlock)
        locked = self.open(LAN, access_mode=AccessModes.exclusive_lock)
        self.assertEqual(locked.lock_state, AccessModes.exclusive_lock)
        self.fails(StatusCode.error_resource_locked, self.open(LAN).clear)

    def test_trigger_is_ignored(self):
        self.instrument.assert_trigger()
        self.assertEqual(self.instrument.query("SYST:ERR?"), '0,"No error"')

    def test_events_never_come(self):
        request = EventType.service_request
        self.instrument.enable_event(request, EventMechanism.queue)
        self.fails(StatusCode.error_timeout, self.instrument.wait_on_event, request, 50)
        self.instrument.discard_events(request, EventMechanism.queue)
        self.instrument.disable_event(request, EventMechanism.queue)
        self.fails(StatusCode.error_not_enabled, self.instrument.wait_on_event, request, 50)
        called = []
        handler = self.instrument.wrap_handler(lambda *arguments: called.append(arguments))
        user_handle = self.instrument.install_handler(request, handler, 7)
        self.instrument.enable_event(request, EventMechanism.handler)
        self.assertEqual(self.instrument.query("*IDN?"), IDENTITY)
        self.instrument.disable_event(request, EventMechanism.handler)
        self.instrument.uninstall_handler(request, handler, user_handle)
        self.assertEqual(called, [])

    def test_every_attribute_that_pyvisa_knows_can_be_read(self):
        # Its own mistake: the type that it names for this one does not exist.
        broken = {"VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB"}
        absent = {
            "VI_ATTR_TCPIP_HISLIP_VERSION",
            "VI_ATTR_TCPIP_HISLIP_OVERLAP_EN",
        }
        for bus, name in ((InterfaceType.usb, USB), (InterfaceType.tcpip, LAN)):
            instrument = self.open(name)
            known = pyvisa.attributes.AttributesPerResource[(bus, "INSTR")]
            known = known | pyvisa.attributes.AttributesPerResource[
                pyvisa.attributes.AllSessionTypes
            ]
            for attribute in known:
                if attribute.visa_name in broken:
                    continue
                with self.subTest(attribute.visa_name, bus=bus.name):
                    if attribute.visa_name in absent:
                        self.fails(
                            StatusCode.error_nonsupported_attribute,
                            instrument.get_visa_attribute,
                            attribute.attribute_id,
                        )
                    else:
                        instrument.get_visa_attribute(attribute.attribute_id)
        self.assertEqual(self.instrument.model_name, "TMX5044")
        self.assertEqual(self.instrument.manufacturer_name, "TMX")
        self.assertEqual(self.instrument.serial_number, "SN44001")
        self.assertEqual(self.instrument.manufacturer_id, 0xA17E)
        self.assertEqual(self.instrument.is_4882_compliant, True)
        self.assertEqual(
            self.open(LAN).get_visa_attribute(ResourceAttribute.tcpip_address), "127.0.0.2"
        )
        user_data = 0xFEDCBA98  # pyvisa passes 32 bits of it
        self.instrument.set_visa_attribute(ResourceAttribute.user_data, user_data)
        self.assertEqual(
            self.instrument.get_visa_attribute(ResourceAttribute.user_data), user_data
        )

    def test_two_sessions_share_the_switches_and_nothing_else(self):
        other = self.open(USB)
        self.instrument.write("*IDN?")
        other.write("ADD:ROUTe A3")
        self.assertEqual(other.query("ROUTes?"), "3,14,9,0")
        other.write("*RST")
        self.assertEqual(self.instrument.read(), IDENTITY)

    def test_nothing_is_left_after_close(self):
        session = self.instrument.session
        library = self.manager.visalib
        with self.open(USB) as second:
            second.lock_excl(timeout=100)
        self.assertEqual(self.instrument.query("*IDN?"), IDENTITY)
        self.instrument.close()
        self.fails(StatusCode.error_invalid_object, library.read_stb, session)
        with self.assertRaises(pyvisa.InvalidSession):
            self.instrument.query("*IDN?")
        manager = self.manager.session
        orphan = self.open(LAN).session
        self.manager.close()
        self.fails(StatusCode.error_invalid_object, library.list_resources, manager)
        self.fails(StatusCode.error_invalid_object, library.write, orphan, b"*IDN?")


if __name__ == "__main__":
    unittest.main()
