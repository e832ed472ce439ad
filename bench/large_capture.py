#!/usr/bin/env python3
"""large_capture.py ROUTERS OUT.pcap: a capture in which one router tells another the database of a
large OSPFv2 network: ROUTERS routers in one area, four times as many point-to-point links, forty
times as many externals; the shape that RoutesOfOneRouter is measured on. Router IDs are 10.0.0.1 and
on."""

import pathlib
import random
import struct
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / 'tests' / 'lab'))
from checksums import fletcher, internet_checksum

LARGEST = 1400  # octets of LSAs in a packet
FIRST = 0x0A000001


def lsa(kind, link_state_id, router, body):
    rest = struct.pack("!BBIIIHH", 2, kind, link_state_id, router, 0x80000001, 0, 20 + len(body))
    rest += body
    return struct.pack("!H", 1) + rest[:14] + struct.pack("!H", fletcher(rest, 14)) + rest[16:]


def router_lsas(routers):
    """A ring, so that all is connected, and chords; each router has a loopback."""
    links = [[struct.pack("!IIBBH", FIRST + at, 0xFFFFFFFF, 3, 0, 0)] for at in range(routers)]
    for at in range(4 * routers):
        one = at if at < routers else random.randrange(routers)
        two = (at + 1) % routers if at < routers else random.randrange(routers)
        if one == two:
            two = (one + 1) % routers
        subnet, metric = 0x0B000000 + 4 * at, random.randint(1, 20)
        for end, other, own in ((one, two, subnet + 1), (two, one, subnet + 2)):
            links[end].append(struct.pack("!IIBBH", FIRST + other, own, 1, 0, metric)
                              + struct.pack("!IIBBH", subnet, 0xFFFFFFFC, 3, 0, metric))
    for at, those in enumerate(links):
        flags = 2 if at % 10 == 0 else 0
        count = 2 * len(those) - 1
        yield lsa(1, FIRST + at, FIRST + at, struct.pack("!BBH", flags, 0, count) + b"".join(those))


def external_lsas(routers):
    count = 40 * routers
    for at in range(count):
        router = FIRST + random.randrange(routers) // 10 * 10
        metric = 20 | random.getrandbits(1) << 31
        yield lsa(5, 0x64000000 + 256 * (at % (count * 9 // 10 + 1)), router,
                  struct.pack("!IIII", 0xFFFFFF00, metric, 0, 0))


def packet(lsas):
    body = struct.pack("!I", len(lsas)) + b"".join(lsas)
    header = struct.pack("!BBHII", 2, 4, 24 + len(body), FIRST, 0)
    check = internet_checksum(header + bytes(4) + body)
    ospf = header + struct.pack("!HH", check, 0) + bytes(8) + body
    ip = struct.pack("!BBHHHBBHII", 0x45, 0xC0, 20 + len(ospf), 0, 0, 1, 89, 0, 0x0B000001,
                     0xE0000005)
    ip = ip[:10] + struct.pack("!H", internet_checksum(ip)) + ip[12:]
    return bytes.fromhex("01005e000005020000000001") + b"\x08\x00" + ip + ospf


def main():
    routers = int(sys.argv[1])
    random.seed(routers)
    with open(sys.argv[2], "wb") as out:
        out.write(struct.pack("=IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, 1))
        held, time = [], 0

        def send():
            nonlocal time
            frame = packet(held)
            time += 1
            out.write(struct.pack("=IIII", 1700000000 + time // 1000, time % 1000 * 1000,
                                  len(frame), len(frame)) + frame)
            held.clear()

        for lsas in (router_lsas(routers), external_lsas(routers)):
            for each in lsas:
                if held and sum(map(len, held)) + len(each) > LARGEST:
                    send()
                held.append(each)
        send()


main()
