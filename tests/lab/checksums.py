"""The checksums of OSPF packets and LSAs, for whoever writes some."""

import struct


def fletcher(body, at):
    """The LSA's checksum over `body` (the LSA without its age), whose checksum field is at `at`."""
    c0 = c1 = 0
    for byte in body:
        c0 += byte
        c1 += c0
    c0, c1 = c0 % 255, c1 % 255
    x = ((len(body) - at - 1) * c0 - c1) % 255 or 255
    y = (510 - c0 - x) % 255 or 255
    return x << 8 | y


def internet_checksum(data):
    total = sum(struct.unpack(f"!{len(data) // 2}H", data))
    while total >> 16:
        total = (total & 0xFFFF) + (total >> 16)
    return ~total & 0xFFFF
