#!/usr/bin/env python3
"""Writes a capture of a made-up OSPFv2 network: make_network.py ROUTERS FILE. Areas of about twenty
routers hang from a backbone ring; each has a tree with cross links, a network of three routers and
an AS boundary router. The same number gives the same capture, with every checksum right."""

import socket
import struct
import sys


def quad(text):
    return struct.unpack("!I", socket.inet_aton(text))[0]


def internet_checksum(data):
    data += b"\0" * (len(data) % 2)
    total = sum(struct.unpack("!%dH" % (len(data) // 2), data))
    while total >> 16:
        total = (total & 0xffff) + (total >> 16)
    return ~total & 0xffff


def sealed(lsa):
    """With its length and its Fletcher checksum, which leaves the age out."""
    lsa = bytearray(lsa)
    struct.pack_into("!H", lsa, 18, len(lsa))
    c0 = c1 = 0
    for octet in lsa[2:]:
        c0 = (c0 + octet) % 255
        c1 = (c1 + c0) % 255
    x = ((len(lsa) - 17) * c0 - c1) % 255 or 255
    y = 510 - c0 - x
    lsa[16], lsa[17] = x, y - 255 if y > 255 else y
    return bytes(lsa)


def header(kind, lsid, router, options=2):
    return struct.pack("!HBBIIIHH", 10, options, kind, lsid, router, 0x80000001, 0, 0)


class Network:
    def __init__(self, count):
        self.links = {}      # of each area and router
        self.networks = []   # area, address of the designated router, routers
        self.externals = []  # router, network
        self.names = {}
        self.used = 0
        areas = max(1, count // 20)
        borders = []
        for area in range(1, areas + 1):
            size = count // areas + (1 if area <= count % areas else 0)
            routers = [quad("10.%d.%d.%d" % (area // 250, area % 250, n + 1)) for n in range(size)]
            borders.append(routers[0])
            self.make_area(area, routers)
        for at, border in enumerate(borders):
            if len(borders) > 1 and (len(borders) > 2 or at == 0):
                self.connect(0, border, borders[(at + 1) % len(borders)])
            if at % 5 == 0 and len(borders) > 10:
                self.connect(0, border, borders[(at + len(borders) // 2) % len(borders)])

    def make_area(self, area, routers):
        for at in range(1, len(routers)):
            self.connect(area, routers[(at - 1) // 3], routers[at])
            if at % 6 == 5:
                self.connect(area, routers[at - 1], routers[at])
        if len(routers) >= 6:
            base = quad("172.20.0.0") + area * 256
            self.networks.append((area, base, routers[-3:]))
            for place, router in enumerate(routers[-3:]):
                self.add(area, router, (2, base + 1, base + 1 + place, 10))
        last = routers[-1]
        self.names[last] = "edge%d.example" % area
        for n in range(1 + area % 5):
            self.externals.append((last, quad("192.168.0.0") + (area * 8 + n) * 256))

    def add(self, area, router, link):
        self.links.setdefault((area, router), []).append(link)

    def connect(self, area, a, b):
        base = quad("172.16.0.0") + 4 * self.used
        self.used += 1
        cost = 10 + self.used * 7 % 90
        self.add(area, a, (1, b, base + 1, cost))
        self.add(area, b, (1, a, base + 2, cost + (self.used % 11 == 0)))

    def lsas(self):
        """Area, originator and LSA."""
        areas_of = {}
        for area, router in self.links:
            areas_of.setdefault(router, []).append(area)
        boundary = {router for router, _ in self.externals}
        for (area, router), links in self.links.items():
            flags = (1 if len(areas_of[router]) > 1 else 0) | (2 if router in boundary else 0)
            body = struct.pack("!BBH", flags, 0, len(links))
            for kind, link_id, data, cost in links:
                body += struct.pack("!IIBBH", link_id, data, kind, 0, cost)
            yield area, router, header(1, router, router) + body
        for area, base, routers in self.networks:
            body = struct.pack("!I", 0xffffff00) + b"".join(struct.pack("!I", r) for r in routers)
            yield area, routers[0], header(2, base + 1, routers[0]) + body
        for router, network in self.externals:
            body = struct.pack("!IIII", 0xffffff00, 0x80000014, 0, 0)
            yield areas_of[router][0], router, header(5, network, router) + body
        for router, name in self.names.items():
            value = name.encode()
            body = struct.pack("!HH", 7, len(value)) + value + b"\0" * (-len(value) % 4)
            yield areas_of[router][0], router, header(10, 4 << 24, router, 0x42) + body


def frame(area, router, lsas):
    body = struct.pack("!I", len(lsas)) + b"".join(lsas)
    ospf = struct.pack("!BBHIIHHQ", 2, 4, 24 + len(body), router, area, 0, 0, 0) + body
    # The checksum leaves the eight octets of the authentication out.
    ospf = ospf[:12] + struct.pack("!H", internet_checksum(ospf[:16] + ospf[24:])) + ospf[14:]
    source = quad("172.31.0.1")
    ip = struct.pack("!BBHHHBBHII", 0x45, 0xc0, 20 + len(ospf), 0, 0, 1, 89, 0, source,
                     quad("224.0.0.5"))
    ip = ip[:10] + struct.pack("!H", internet_checksum(ip)) + ip[12:]
    return bytes.fromhex("01005e000005020000000001") + b"\x08\x00" + ip + ospf


def main():
    network = Network(int(sys.argv[1]))
    with open(sys.argv[2], "wb") as out:
        out.write(struct.pack("!IHHiIII", 0xa1b2c3d4, 2, 4, 0, 0, 65535, 1))
        for at, (area, router, lsa) in enumerate(network.lsas()):
            octets = frame(area, router, [sealed(lsa)])
            out.write(struct.pack("!IIII", 1700000000 + at // 1000, at % 1000 * 1000, len(octets),
                                  len(octets)) + octets)


main()
