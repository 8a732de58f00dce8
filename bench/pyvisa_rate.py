# SPDX-License-Identifier: MIT
"""How many thousand queries a second pyvisa-py makes: pyvisa_rate.py ADDRESS QUERIES"""

import sys
import time

import pyvisa

address, queries = sys.argv[1], int(sys.argv[2])
instrument = pyvisa.ResourceManager("@py").open_resource(
    f"TCPIP0::{address}::INSTR", read_termination="\n", write_termination="\n"
)
instrument.query("*IDN?")
begin = time.monotonic()
for _ in range(queries):
    instrument.query("*IDN?")
print(f"{queries / (time.monotonic() - begin) / 1000:.3f}")
