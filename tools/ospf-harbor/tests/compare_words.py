#!/usr/bin/env python3
"""compare_words.py PROGRAM DATA

What `lsdb --json` says of the links and metrics of LSAs and of the TLVs of opaque ones (traffic engineering,
router information, segment routing) in the recorded networks, against what tshark says of the same
LSAs: every number that it shows has to be among ours, and nothing more. What has no words there has
the same octets or words here."""

import collections
import gzip
import json
import pathlib
import struct
import subprocess
import sys

# By tshark's field: what the number is here, and how it is written there.
COUNTS = {"ospf.tlv.sid_label": "sid", "ospf.tlv.range_size": "size",
          "ospf.tlv.adjsid.flags": "adjacency flags", "ospf.tlv.pfxsid.flags": "prefix flags",
          "ospf.tlv.extpfx.flags": "route flags", "ospf.tlv.extlink.weight": "weight",
          "ospf.mpls.te_metric": "metric", "ospf.mpls.linkcolor": "colour",
          "ospf.tlv.unidirectional_link_delay": "microseconds",
          "ospf.tlv.unidirectional_delay_variation": "microseconds",
          "ospf.tlv.unidirectional_link_delay_min": "least",
          "ospf.tlv.unidirectional_link_delay_max": "most"}
ADDRESSES = ("ospf.tlv.extlink.nbr", "ospf.mpls.local_addr", "ospf.mpls.remote_addr",
             "ospf.mpls.routerid", "ospf.mpls.linkid", "ospf.lsa.router.linkid",
             "ospf.lsa.router.linkdata")
METRICS = ("ospf.metric", "ospf.lsa.router.metric0")
RATES = ("ospf.mpls.link_max_bw", "ospf.mpls.pri")
CAPABILITIES = {"ospf.ri.options.grc": "graceful restart",
                "ospf.ri.options.grh": "graceful restart helper",
                "ospf.ri.options.srs": "stub router", "ospf.ri.options.tes": "traffic engineering",
                "ospf.ri.options.p2plan": "point-to-point over LAN"}
FLAGS = {"Adj-SID": {"B": 0x80, "V": 0x40, "L": 0x20, "G": 0x10, "P": 0x08},
         "Prefix-SID": {"NP": 0x40, "M": 0x20, "E": 0x10, "V": 0x08, "L": 0x04},
         "extended prefix": {"A": 0x80, "N": 0x40}}
FLAGS["LAN-Adj-SID"] = FLAGS["Adj-SID"]
FLAG_NAMES = {"Adj-SID": "adjacency flags", "LAN-Adj-SID": "adjacency flags",
              "Prefix-SID": "prefix flags", "extended prefix": "route flags"}


def rate(number):
    return f"octets/s {struct.unpack('f', struct.pack('f', number))[0]:.6g}"


def their_fact(key, value):
    if key in METRICS:
        return f"metric {value}"
    if key in COUNTS:
        return f"{COUNTS[key]} {int(value, 0)}"
    if key in ADDRESSES:
        return f"address {value}"
    if key in RATES:
        return rate(float(value))
    if key in CAPABILITIES and value == "1":
        return f"capability {CAPABILITIES[key]}"
    return None


def read_theirs(node, lsas, facts, unknown):
    """Walks through a packet; facts and unknown octets are those of the LSA that is around."""
    if isinstance(node, list):
        for each in node:
            read_theirs(each, lsas, facts, unknown)
        return
    if not isinstance(node, dict):
        return
    if "ospf.advrouter" in node and "ospf.lsa.length" in node:
        facts, unknown = collections.Counter(), []
        name = tuple(node[key] for key in ("ospf.advrouter", "ospf.lsa.seqnum", "ospf.lsa.chksum"))
        lsas.setdefault(name, []).append((facts, unknown))
    for key, value in node.items():
        for each in value if isinstance(value, list) else [value]:
            if not isinstance(each, str) or facts is None:
                continue
            fact = their_fact(key, each)
            if fact:
                facts[fact] += 1
            if key == "ospf.tlv_value":
                unknown.append(each.replace(":", ""))
        read_theirs(value, lsas, facts, unknown)


def our_facts(tlvs, facts, unknown):
    for tlv in tlvs:
        name, says = tlv["name"], tlv["says"]
        if name is None:
            unknown.append(tlv["octets"])
        for key, value in says.items():
            if key in ("label", "index"):
                facts[f"sid {value}"] += 1
            elif key == "flags" and name in FLAGS:
                facts[f"{FLAG_NAMES[name]} {sum(FLAGS[name][each] for each in value)}"] += 1
            elif key in ("size", "weight", "least", "most"):
                facts[f"{key} {value}"] += 1
            elif tlv["unit"] == "microseconds":
                facts[f"microseconds {value}"] += 1
            elif key in ("neighbour", "ID", "data"):
                facts[f"address {value}"] += 1
            elif tlv["unit"] == "octets/s":
                for each in value if isinstance(value, list) else [value]:
                    facts[rate(each)] += 1
            elif name in ("router address", "link ID", "local address", "remote address"):
                for each in value if isinstance(value, list) else [value]:
                    facts[f"address {each}"] += 1
            elif name == "metric":
                facts[f"metric {value}"] += 1
            elif name == "administrative group":
                facts[f"colour {int(value, 16)}"] += 1
            elif name == "capabilities":
                for each in value:
                    facts[f"capability {each}"] += 1
        our_facts(tlv["sub_tlvs"], facts, unknown)


# Rates that tshark does not know: residual, available and utilized bandwidth.
WITHOUT_WORDS = ("residual bandwidth", "available bandwidth", "utilized bandwidth", "loss")


def split_known(tlvs):
    """TLVs without those that tshark has no words for, and these."""
    known, others = [], []
    for tlv in tlvs:
        if tlv["name"] in WITHOUT_WORDS:
            others.append(tlv)
            continue
        below, more = split_known(tlv["sub_tlvs"])
        known.append({**tlv, "sub_tlvs": below})
        others += more
    return known, others


def our_octets(tlv):
    if tlv["name"] == "loss":
        return f"{round(tlv['says']['value'] / 0.000003):08x}"
    return struct.pack(">f", tlv["says"]["value"]).hex()


def our_metrics(body, facts):
    for key in ("links", "summary", "external", "ia_prefix_list"):
        for each in body.get(key, ()):
            facts[f"metric {each['metric']}"] += 1
            if "link_data" in each:
                facts.update([f"address {each['link_id']}", f"address {each['link_data']}"])
    if "metric" in body:
        facts[f"metric {body['metric']}"] += 1


def compare(program, network):
    theirs = {}
    for packet in json.load(gzip.open(network / "tshark.json.gz")):
        read_theirs(packet, theirs, None, None)
    run = subprocess.run([program, "lsdb", "--json", "--from", network / "all.pcap"],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False)
    seen, failed = 0, False
    for lsa in map(json.loads, run.stdout.splitlines()):
        name = (lsa["adv_router"], lsa["seq_num"], lsa["checksum"])
        known, others = split_known(lsa["body"].get("tlvs", []))
        facts, unknown = collections.Counter(), sorted(our_octets(tlv) for tlv in others)
        our_facts(known, facts, unknown)
        our_metrics(lsa["body"], facts)
        if not facts and not unknown:
            continue
        seen += 1
        # Headers alone come in descriptions and acknowledgements.
        there = [each for each in theirs.get(name, []) if each[0] or each[1]]
        if not any(facts == each[0] and sorted(unknown) == sorted(each[1]) for each in there):
            failed = True
            print(network.name, lsa["type_name"], lsa["lsa_id"], *name, "here", dict(facts), unknown,
                  "there", there[:1])
    return seen, failed


def main():
    program, data = sys.argv[1], pathlib.Path(sys.argv[2])
    total, any_failed = 0, False
    for network in sorted(data.iterdir()):
        if (network / "tshark.json.gz").exists():
            seen, failed = compare(program, network)
            total, any_failed = total + seen, any_failed or failed
            if seen:
                print(f"{network.name}: {seen} LSAs compared")
    if total < 700:
        any_failed = True
        print(f"only {total} LSAs were compared")
    return 1 if any_failed else 0


if __name__ == "__main__":
    sys.exit(main())
