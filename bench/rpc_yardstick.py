# SPDX-License-Identifier: MIT
"""The yardstick of `corvane-sim lan`: VXI-11 in plain Python, with every answer from memory.

Serves the port mapper and the core channel at the address that is named.
"""

import socket
import struct
import sys
import threading

IDENTITY = b"TMX,TMX5044,SN44002,1.0.0\n"
CORE_PORT = 50111


def opaque(data):
    return struct.pack(">I", len(data)) + data + b"\0" * (-len(data) % 4)


CORE_ANSWERS = {
    10: struct.pack(">4I", 0, 1, 0, 65536),
    12: struct.pack(">2I", 0, 4) + opaque(IDENTITY),
    23: struct.pack(">I", 0),
}


def core_answer(call):
    procedure = struct.unpack_from(">I", call, 20)[0]
    if procedure == 11:
        return struct.pack(">I", 0) + call[56:60]
    return CORE_ANSWERS[procedure]


def mapper_answer(host):
    address = opaque(f"{host}.{CORE_PORT >> 8}.{CORE_PORT & 255}".encode())

    def answer(call):
        return struct.pack(">I", CORE_PORT) if call[16:20] == b"\0\0\0\2" else address

    return answer


def receive(peer, count):
    data = peer.recv(count)
    while 0 < len(data) < count:
        part = peer.recv(count - len(data))
        if not part:
            return b""
        data += part
    return data


def serve(peer, answer):
    peer.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
    while header := receive(peer, 4):
        call = receive(peer, struct.unpack(">I", header)[0] & 0x7FFFFFFF)
        reply = call[:4] + struct.pack(">5I", 1, 0, 0, 0, 0) + answer(call)
        peer.sendall(struct.pack(">I", 0x80000000 | len(reply)) + reply)
    peer.close()


def accept_all(server, answer):
    while True:
        threading.Thread(target=serve, args=(server.accept()[0], answer), daemon=True).start()


if __name__ == "__main__":
    own_host = sys.argv[1]
    core = socket.create_server((own_host, CORE_PORT))
    mapper = socket.create_server((own_host, 111))
    print("listening", flush=True)
    threading.Thread(target=accept_all, args=(core, core_answer), daemon=True).start()
    accept_all(mapper, mapper_answer(own_host))
