#!/usr/bin/env python3
"""Sends one OSPFv2 link state update with one AS-external LSA for 192.0.2.0/24 to the neighbour on a
point-to-point link, as the router whose namespace it runs in: numbers and checksums as asked."""

import argparse
import ipaddress
import socket
import struct

from checksums import fletcher, internet_checksum


def external(originator, sequence, wrong):
    prefix, mask = (ipaddress.IPv4Address(a).packed for a in ("192.0.2.0", "255.255.255.0"))
    after_age = (struct.pack("!BB", 0x02, 5) + prefix + originator.packed
                 + struct.pack("!IHH", sequence, 0, 36) + mask + struct.pack("!I4xI", 0x80000014, 0))
    check = fletcher(after_age, 14)
    if wrong:
        check ^= 0x0101
    return struct.pack("!H", 1) + after_age[:14] + struct.pack("!H", check) + after_age[16:]


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--interface", required=True)
    options.add_argument("--from", dest="source", required=True)
    options.add_argument("--router", type=ipaddress.IPv4Address, required=True)
    options.add_argument("--originator", type=ipaddress.IPv4Address, required=True)
    options.add_argument("--sequence", type=lambda text: int(text, 16), required=True)
    options.add_argument("--wrong-lsa", action="store_true")
    options.add_argument("--wrong-packet", action="store_true")
    arguments = options.parse_args()

    lsa = external(arguments.originator, arguments.sequence, arguments.wrong_lsa)
    body = struct.pack("!I", 1) + lsa
    header = struct.pack("!BBH", 2, 4, 24 + len(body)) + arguments.router.packed + bytes(4)
    check = internet_checksum(header + bytes(4) + body)
    if arguments.wrong_packet:
        check ^= 0x0101
    packet = header + struct.pack("!HH", check, 0) + bytes(8) + body

    out = socket.socket(socket.AF_INET, socket.SOCK_RAW, 89)
    out.setsockopt(socket.SOL_SOCKET, socket.SO_BINDTODEVICE, arguments.interface.encode())
    out.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_TTL, 1)
    out.bind((arguments.source, 0))
    out.sendto(packet, ("224.0.0.5", 0))


main()
