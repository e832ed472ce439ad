#!/usr/bin/env python3
"""Makes the seed corpus of decode_fuzz from a classic pcap of Ethernet frames.

    make_corpus.py PCAP OUTDIR

Each seed is one octet for the link type and then frames, each behind its length (two octets) and
one octet that says "nothing cut, no time gone" (fuzz_input.hpp). One seed for each kind of packet
(version, type, size class, LSA types in it) holds that packet alone; a few hold a conversation.
"""

import hashlib
import pathlib
import struct
import sys


def frames(data):
    order = "<" if data[:4] == b"\xd4\xc3\xb2\xa1" else ">"
    at = 24
    while at < len(data):
        length = struct.unpack(order + "I", data[at + 8:at + 12])[0]
        yield data[at + 16:at + 16 + length]
        at += 16 + length


def kind_of(frame):
    v6 = frame[12:14] == b"\x86\xdd"
    ospf = frame[54:] if v6 else frame[34:]
    types = set()
    if ospf[1] == 4:
        at = (16 if v6 else 24) + 4
        while at + 20 <= len(ospf):
            types.add((ospf[at + 2:at + 4] if v6 else ospf[at + 3:at + 4]).hex())
            length = struct.unpack(">H", ospf[at + 18:at + 20])[0]
            if length < 20:
                break
            at += length
    return v6, ospf[1], len(ospf).bit_length(), ospf[15] if not v6 else 0, tuple(sorted(types))


def seed(link_type, some):
    return bytes([link_type]) + b"".join(struct.pack(">HB", len(x), 0) + x for x in some)


def main():
    if len(sys.argv) != 3:
        raise SystemExit(__doc__)
    everything = list(frames(pathlib.Path(sys.argv[1]).read_bytes()))
    out = pathlib.Path(sys.argv[2])
    out.mkdir(parents=True, exist_ok=True)
    seeds = {}
    for frame in everything:
        seeds.setdefault(kind_of(frame), seed(0, [frame]))
    chosen = list(seeds.values())
    # The same packets behind other link layers.
    for number, (link_type, head) in enumerate([(1, b""), (2, bytes(14)), (3, None), (4, b"\2\0\0\0")]):
        frame = everything[number]
        ether = frame[12:14]
        head = head + ether if link_type == 2 else ether + bytes(18) if link_type == 3 else head
        chosen.append(seed(link_type, [head + frame[14:]]))
    # Packets that are not hellos, in order: an exchange and its flooding.
    talk = [frame for frame in everything if (frame[55] if frame[12:14] == b"\x86\xdd" else frame[35]) != 1]
    for start in range(0, min(len(talk), 320), 80):
        chosen.append(seed(0, everything[start // 4:start // 4 + 6] + talk[start:start + 40]))
    # Once more, asking for repair of checksums, for mutation to get past them.
    chosen += [bytes([content[0] | 0x80]) + content[1:] for content in seeds.values()]
    for content in chosen:
        (out / hashlib.sha1(content).hexdigest()).write_bytes(content)
    print(len(chosen), "seeds,", sum(map(len, chosen)), "octets")


main()
