#!/usr/bin/env python3
"""Makes the reference files that the decoder is compared with.

    make_reference.py RECORDING

RECORDING is a directory with all.pcap, segments.tsv (which router's interface is on which segment)
and routers/NAME/*.json.gz, what each FRR router says of its databases and neighbours, as lab.sh
writes them. tshark decodes the capture. Four files come out of it, in the same directory:

decoder.txt    one line for each packet, hello, description, request, LSA header and LSA, with every
               field; the first word is the number of the packet. The test writes the same lines
               from its own decoding. Floats are the hexadecimal digits of their 32 bits. An
               authentication trailer that tshark shows nothing of is "trailer=?" and its length.
databases.txt  one line for each LSA that a router holds and that is not at MaxAge:
               router, version, place (area, "as", or the segment of a link), type, link-state ID,
               advertising router, sequence number, checksum.
unsent.txt     such lines of LSAs that tshark finds in no update: a router may hold LSAs of its own
               that it has nobody to send to (AS-externals of a router with no area but an NSSA).
neighbors.txt  one line for each neighbour: router, version, neighbour, its address, state.

Nothing is taken from the library under test.
"""

import gzip
import ipaddress
import json
import pathlib
import struct
import subprocess
import sys


def many(value):
    """A field that tshark repeats is a list, one that stands alone is not."""
    if value is None:
        return []
    return value if isinstance(value, list) else [value]


def number(text):
    return int(text, 0)


def float_bits(text):
    return struct.pack(">f", float(text)).hex()


def hexadecimal(text):
    return text.replace(":", "")


def is_v3(lsa):
    return "ospf.v3.lsa" in lsa


def header_fields(lsa):
    if is_v3(lsa):
        kind = number(lsa["ospf.v3.lsa"])
        options = 0
        link_state_id = lsa["ospf.link_state_id"]
        do_not_age = lsa["ospf.v3.lsa.do_not_age"]
    else:
        kind = number(lsa["ospf.lsa"])
        options = number(lsa["ospf.v2.options"])
        do_not_age = lsa["ospf.lsa.donotage"]
        if "ospf.lsid_opaque_type" in lsa:
            low = lsa.get("ospf.lsid.opaque_id") or lsa.get("ospf.lsid_te_lsa.instance")
            high = number(lsa.get("ospf.lsid_te_lsa.reserved", "0"))
            value = number(lsa["ospf.lsid_opaque_type"]) << 24 | high << 16 | number(low)
            link_state_id = str(ipaddress.IPv4Address(value))
        else:
            link_state_id = lsa.get("ospf.lsa.id") or lsa["ospf.link_state_id"]
    return (f"age={number(lsa['ospf.lsa.age'])} dna={number(do_not_age)} options={options:x} type={kind:x} "
            f"id={link_state_id} adv={lsa['ospf.advrouter']} seq={number(lsa['ospf.lsa.seqnum']):x} "
            f"checksum={number(lsa['ospf.lsa.chksum']):x} length={number(lsa['ospf.lsa.length'])}")


def v2_router(lsa):
    out = f"flags={number(lsa['ospf.v2.router.lsa.flags']):x} links={lsa['ospf.lsa.number_of_links']}"
    links = []
    for key, value in lsa.items():
        if key.startswith("Type: "):
            links += many(value)
    # tshark names a group by its contents, so that equal links stand together: order is lost.
    rows = []
    for link in links:
        if number(link["ospf.lsa.router.nummetrics"]) != 0:
            raise SystemExit("a router link with more than one metric: not known here")
        rows.append(f" [{link['ospf.lsa.router.linkid']} {link['ospf.lsa.router.linkdata']} "
                    f"{link['ospf.lsa.router.linktype']} 0:{link['ospf.lsa.router.metric0']}]")
    return out + "".join(sorted(rows))


def v2_external(lsa):
    out = f"mask={lsa['ospf.lsa.asext.netmask']}"
    columns = [many(lsa[key]) for key in ("ospf.lsa.tos", "ospf.lsa.asext.type", "ospf.metric",
                                          "ospf.lsa.asext.fwdaddr", "ospf.lsa.asext.extrttag")]
    for mt_id, type_2, metric, forward, tag in zip(*columns, strict=True):
        out += f" [{number(mt_id)} {number(type_2)} {number(metric)} {forward} {number(tag)}]"
    return out


def te_sub_tlv(sub):
    kind = number(sub["ospf.tlv_type"])
    out = f"{kind}/{number(sub['ospf.tlv_length'])}"
    if kind == 1:
        return f"{out} type={sub['ospf.mpls.linktype']}"
    if kind == 2:
        return f"{out} id={sub['ospf.mpls.linkid']}"
    if kind == 3:
        return f"{out} local={','.join(many(sub['ospf.mpls.local_addr']))}"
    if kind == 4:
        return f"{out} remote={','.join(many(sub['ospf.mpls.remote_addr']))}"
    if kind == 5:
        return f"{out} metric={sub['ospf.mpls.te_metric']}"
    if kind in (6, 7):
        return f"{out} bandwidth={float_bits(sub['ospf.mpls.link_max_bw'])}"
    if kind == 8:
        return f"{out} unreserved={','.join(float_bits(x) for x in sub['ospf.mpls.pri'])}"
    if kind == 9:
        return f"{out} group={number(sub['ospf.mpls.linkcolor']):x}"
    flags = number(sub.get("ospf.tlv.unidirectional_link_flags", "0"))
    if kind == 27:
        return f"{out} raw={flags:02x}{number(sub['ospf.tlv.unidirectional_link_delay']):06x}"
    if kind == 28:
        return (f"{out} raw={flags:02x}{number(sub['ospf.tlv.unidirectional_link_delay_min']):06x}"
                f"{number(sub['ospf.tlv.unidirectional_link_reserved']):02x}"
                f"{number(sub['ospf.tlv.unidirectional_link_delay_max']):06x}")
    if kind == 29:
        return (f"{out} raw={number(sub['ospf.tlv.unidirectional_link_reserved']):02x}"
                f"{number(sub['ospf.tlv.unidirectional_delay_variation']):06x}")
    return f"{out} raw={hexadecimal(sub['ospf.tlv_value'])}"


def v2_opaque(lsa):
    out = ""
    for key, tlvs in lsa.get("MPLS Traffic Engineering LSA", {}).items():
        for tlv in many(tlvs):
            out += f" tlv={tlv['ospf.tlv_type']}/{tlv['ospf.tlv_length']}"
            if "ospf.mpls.routerid" in tlv:
                out += f" router={tlv['ospf.mpls.routerid']}"
            for value in tlv.values():
                for sub in many(value):
                    if isinstance(sub, dict):
                        out += f" ({te_sub_tlv(sub)})"
    for tlv in lsa.get("Opaque Router Information LSA", {}).values():
        out += f" tlv={tlv['ospf.tlv_type.opaque']}/{tlv['ospf.tlv_length']}"
        # tshark shows the first octet of the capabilities.
        out += f" capabilities={number(tlv['ospf.ri.options']):x}"
    for tlv in many(lsa.get("ospf.v2.grace")):
        out += f" tlv={tlv['ospf.tlv_type']}/{tlv['ospf.tlv_length']}"
        for name in ("period", "reason", "ip"):
            if f"ospf.v2.grace.{name}" in tlv:
                out += f" {name}={tlv[f'ospf.v2.grace.{name}']}"
    return out.lstrip()


def v3_prefixes(lsa, metrics):
    out = ""
    lengths = many(lsa.get("ospf.prefix_length"))
    options = many(lsa.get("ospf.v3.prefix.options"))
    addresses = many(lsa.get("ospf.v3.address_prefix.ipv6"))
    # A prefix of length zero may be without an address field.
    if len(addresses) != len(lengths):
        left = iter(addresses)
        addresses = ["::" if number(length) == 0 else next(left) for length in lengths]
    for length, option, metric, address in zip(lengths, options, metrics or [0] * len(lengths), addresses,
                                               strict=True):
        out += f" [{address}/{length} {number(option):x} {metric}]"
    return out


def v3_router(lsa):
    out = f"flags={number(lsa['ospf.v3.router.lsa.flags']):x} options={number(lsa['ospf.v3.options']):x}"
    for key, links in lsa.items():
        if key == "Router Interfaces":
            for link in links.values():
                for one in many(link):
                    out += (f" [{one['ospf.v3.lsa.type']} {one['ospf.metric']} {one['ospf.v3.lsa.interface_id']} "
                            f"{one['ospf.v3.lsa.neighbor_interface_id']} {one['ospf.v3.lsa.neighbor_router_id']}]")
    return out


def v3_external(lsa):
    flags = number(lsa["ospf.v3.as.external.flags"])
    forward = (lsa.get("ospf.v3.lsa.forwarding_address.ipv6")
               or lsa.get("ospf.v3.lsa.forwarding_address") or "::")
    return (f"flags={flags:x} metric={lsa['ospf.metric']} "
            f"ref={number(lsa['ospf.v3.lsa.referenced_ls_type']):x} forward={forward} "
            f"tag={number(lsa.get('ospf.v3.lsa.external_route_tag', '0'))}" + v3_prefixes(lsa, None))


def body_fields(lsa):
    if not is_v3(lsa):
        kind = number(lsa["ospf.lsa"])
        if kind == 1:
            return v2_router(lsa)
        if kind == 2:
            return (f"mask={lsa['ospf.lsa.network.netmask']} "
                    f"attached={','.join(many(lsa['ospf.lsa.network.attchrtr']))}")
        if kind in (3, 4):
            rows = zip(many(lsa["ospf.lsa.tos"]), many(lsa["ospf.metric"]), strict=True)
            return (f"mask={lsa['ospf.lsa.asbr.netmask']}"
                    + "".join(f" [{number(mt)} {number(metric)}]" for mt, metric in rows))
        if kind in (5, 7):
            return v2_external(lsa)
        return v2_opaque(lsa)
    kind = number(lsa["ospf.v3.lsa"])
    if kind == 0x2001:
        return v3_router(lsa)
    if kind == 0x2002:
        return (f"options={number(lsa['ospf.v3.options']):x} "
                f"attached={','.join(many(lsa['ospf.v3.lsa.attached_router']))}")
    if kind == 0x2003:
        return f"metric={lsa['ospf.metric']}" + v3_prefixes(lsa, None)
    if kind == 0x2004:
        return (f"options={number(lsa['ospf.v3.options']):x} metric={lsa['ospf.metric']} "
                f"router={lsa['ospf.v3.lsa.destination_router_id']}")
    if kind in (0x4005, 0x2007):
        return v3_external(lsa)
    if kind == 0x0008:
        return (f"priority={lsa['ospf.v3.lsa.router_priority']} options={number(lsa['ospf.v3.options']):x} "
                f"address={lsa['ospf.v3.lsa.link_local_interface_address.ipv6']} "
                f"prefixes={lsa['ospf.v3.lsa.num_prefixes']}" + v3_prefixes(lsa, None))
    if kind == 0x2009:
        return (f"prefixes={lsa['ospf.v3.lsa.num_prefixes']} "
                f"ref={number(lsa['ospf.v3.lsa.referenced_ls_type']):x} "
                f"refid={lsa['ospf.v3.lsa.referenced_link_state_id']} "
                f"refadv={lsa['ospf.v3.lsa.referenced_advertising_router']}"
                + v3_prefixes(lsa, many(lsa.get("ospf.metric"))))
    return ""  # tshark 4.0 does not know OSPFv3 grace and router-information LSAs


def packet_line(layer, payload_length):
    head = layer["ospf.header"]
    out = (f"packet version={head['ospf.version']} type={head['ospf.msg']} length={head['ospf.packet_length']} "
           f"router={head['ospf.srcrouter']} area={head['ospf.area_id']} checksum={number(head['ospf.checksum']):x}")
    if head["ospf.version"] == "2":
        out += f" auth={head['ospf.auth.type']}"
        if head["ospf.auth.type"] == "1":
            raise SystemExit("simple authentication: not known here")
        if head["ospf.auth.type"] == "2":
            out += (f" key={head['ospf.auth.crypt.key_id']} sequence={head['ospf.auth.crypt.seq_nbr']} "
                    f"digest={hexadecimal(head['ospf.auth.crypt.data'])}")
        return out
    out += f" instance={head['ospf.instance_id']}"
    if "ospf.at" in layer:
        trailer = layer["ospf.at"]
        out += (f" trailer={number(trailer['ospf.at.auth_type'])} association={number(trailer['ospf.at.sa_id'])} "
                f"sequence={number(trailer['ospf.at.crypto_seq_nbr'])} "
                f"digest={hexadecimal(trailer['ospf.at.auth_data'])}")
    elif payload_length > number(head["ospf.packet_length"]):
        # Behind updates tshark 4.0 leaves the trailer alone; its length is known all the same.
        out += f" trailer=?{payload_length - number(head['ospf.packet_length'])}"
    return out


def hello_line(hello):
    option_field = "ospf.v2.options" if "ospf.v2.options" in hello else "ospf.v3.options"
    mask = hello.get("ospf.hello.network_mask", "0.0.0.0")
    interface = hello.get("ospf.hello.interface_id", "0")
    neighbors = ",".join(many(hello.get("ospf.hello.active_neighbor")))
    return (f"hello mask={mask} interface={interface} hello={hello['ospf.hello.hello_interval']} "
            f"dead={hello['ospf.hello.router_dead_interval']} priority={hello['ospf.hello.router_priority']} "
            f"options={number(hello[option_field]):x} dr={hello['ospf.hello.designated_router']} "
            f"bdr={hello['ospf.hello.backup_designated_router']} neighbors={neighbors}")


def description_line(dd):
    options = number(dd.get("ospf.v2.options") or dd["ospf.v3.options"])
    return (f"description mtu={dd['ospf.db.interface_mtu']} options={options:x} "
            f"flags={number(dd['ospf.dbd']):x} sequence={dd['ospf.db.dd_sequence']}")


def request_line(entry):
    kind = number(entry.get("ospf.v3.lsa") or entry["ospf.lsa"])
    return f"request type={kind:x} id={entry['ospf.link_state_id']} adv={entry['ospf.advrouter']}"


def decoder_lines(packets):
    for packet in packets:
        layers = packet["_source"]["layers"]
        frame = layers["frame"]["frame.number"]
        layer = layers.get("ospf")
        if layer is None:
            continue
        payload_length = number(layers["ipv6"]["ipv6.plen"]) if "ipv6" in layers else 0
        lines = [packet_line(layer, payload_length)]
        kind = layer["ospf.header"]["ospf.msg"]
        for key, value in layer.items():
            if key == "ospf.hello":
                lines.append(hello_line(value))
            elif key == "OSPF DB Description":
                lines.append(description_line(value))
            elif key == "Link State Request":
                lines += [request_line(entry) for entry in many(value)]
            elif key.startswith("LSA-type "):
                lines += ["header " + header_fields(lsa) for lsa in many(value)]
            elif key == "LS Update Packet":
                for name, lsas in value.items():
                    if name.startswith("LSA-type "):
                        lines += [f"lsa {header_fields(lsa)} {body_fields(lsa)}".rstrip() for lsa in many(lsas)]
            elif key not in ("ospf.header", "ospf.at"):
                raise SystemExit(f"packet {frame} of type {kind}: {key} is not known here")
        for line in sorted(lines):
            yield f"{frame} {line}"


def sent_lsas(packets):
    """Version, type, link-state ID, router, sequence number and checksum of each LSA in an update."""
    for packet in packets:
        update = packet["_source"]["layers"].get("ospf", {}).get("LS Update Packet", {})
        for name, lsas in update.items():
            if name.startswith("LSA-type "):
                for lsa in many(lsas):
                    words = dict(word.split("=") for word in header_fields(lsa).split())
                    yield (3 if is_v3(lsa) else 2, int(words["type"], 16), words["id"], words["adv"],
                           int(words["seq"], 16), int(words["checksum"], 16))


V2_LISTS = {"routerLinkStates": 1, "networkLinkStates": 2, "summaryLinkStates": 3, "asbrSummaryLinkStates": 4,
            "nssaExternalLinkStates": 7, "areaLocalOpaqueLsa": 10}
V2_AS_LISTS = {"asExternalLinkStates": 5, "asExternalOpaqueLsa": 11}
V3_TYPES = {"Router": 0x2001, "Network": 0x2002, "Inter-Prefix": 0x2003, "Inter-Router": 0x2004,
            "As-External": 0x4005, "AS-External": 0x4005, "Type-7": 0x2007, "NSSA": 0x2007, "Link": 0x0008,
            "Intra-Prefix": 0x2009}


def load(path):
    packed = path.with_name(path.name + ".gz")
    if packed.exists():
        return json.loads(gzip.decompress(packed.read_bytes()))
    return json.loads(path.read_text()) if path.exists() else None


def v2_rows(database, place, lists):
    for name, kind in lists.items():
        for lsa in database.get(name, []):
            if lsa["lsaAge"] < 3600:
                yield (2, place, kind, lsa["lsId"], lsa["advertisedRouter"], int(lsa["sequenceNumber"], 16),
                       int(lsa["checksum"], 16))


def v3_rows(scope, place):
    for lsa in scope["lsa"]:
        if lsa["age"] < 3600:
            yield (3, place, V3_TYPES[lsa["type"]], lsa["linkStateId"], lsa["advertisingRouter"],
                   lsa["lsSequenceNumber"], lsa["checksum"])


def area_text(text):
    return str(ipaddress.IPv4Address(int(text))) if text.isdigit() else text


def database_rows(recording, name, segment_of):
    directory = recording / "routers" / name
    database = load(directory / "ip-ospf-database.json")
    if database:
        for area, lists in database["areas"].items():
            yield from v2_rows(lists, area.split()[0], V2_LISTS)
        yield from v2_rows(database, "as", V2_AS_LISTS)
    database = load(directory / "ipv6-ospf6-database-detail.json")
    if database:
        for scope in database["areaScopedLinkStateDb"]:
            yield from v3_rows(scope, area_text(scope["areaId"]))
        for scope in database["interfaceScopedLinkStateDb"]:
            # An interface that is on no segment was never captured.
            segment = segment_of.get((name, scope["interface"]))
            if segment:
                yield from v3_rows(scope, segment)
        for scope in database["asScopedLinkStateDb"]:
            yield from v3_rows(scope, "as")


def neighbor_rows(recording, name):
    directory = recording / "routers" / name
    table = load(directory / "ip-ospf-neighbor-detail.json")
    for router, entries in (table or {}).get("neighbors", {}).items():
        for entry in entries:
            address = entry.get("ifaceAddress") or entry["address"]
            yield (2, router, address, entry["nbrState"].split("/")[0])
    table = load(directory / "ipv6-ospf6-neighbor-detail.json")
    for key, entry in (table or {}).items():
        yield (3, key.split("%")[0], entry["linkLocalAddress"], entry["neighborState"])


def main():
    if len(sys.argv) != 2:
        raise SystemExit(__doc__)
    recording = out = pathlib.Path(sys.argv[1])
    answer = subprocess.run(["tshark", "-r", recording / "all.pcap", "-Y", "ospf", "-T", "json", "-J",
                             "frame ip ipv6 ospf", "--no-duplicate-keys"],
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    packets = json.loads(answer.stdout)
    with open(out / "decoder.txt", "w", encoding="ascii") as file:
        for line in decoder_lines(packets):
            print(line, file=file)
    sent = set(sent_lsas(packets))

    segment_of = {}
    for line in (recording / "segments.tsv").read_text().splitlines()[1:]:
        segment, router, interface, _ = line.split("\t")
        segment_of[router, interface] = segment
    names = sorted(path.name for path in (recording / "routers").iterdir() if (path / "frr.conf").exists())
    with open(out / "databases.txt", "w", encoding="ascii") as file, \
            open(out / "unsent.txt", "w", encoding="ascii") as unsent:
        for name in names:
            for version, place, kind, lsid, adv, sequence, checksum in sorted(
                    set(database_rows(recording, name, segment_of))):
                instance = (version, kind, lsid, adv, sequence, checksum)
                print(name, version, place, f"{kind:x}", lsid, adv, f"{sequence:x}", f"{checksum:x}",
                      file=file if instance in sent else unsent)
    with open(out / "neighbors.txt", "w", encoding="ascii") as file:
        for name in names:
            router_id = (load(recording / "routers" / name / "ip-ospf.json") or {}).get("routerId", "?")
            for row in sorted(neighbor_rows(recording, name)):
                print(router_id, *row, file=file)


main()
