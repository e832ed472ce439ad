#!/usr/bin/env python3
"""compare_lists.py PROGRAM DATA [NETWORK...]

For each recorded network in DATA: what `neighbors --json` and `interfaces --json` make of each
router's answers, of all routers' answers and of the packets, against what the routers said; and the
ages that LSAs have by the packets when the routers were asked for theirs. Every
difference must stand in list_differences.txt beside this script, with its reason, and every line
there must be met."""

import gzip
import ipaddress
import json
import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[3] / "tests/support"))
from expected_differences import status_of  # noqa: E402

ROLES = {"Backup": "Backup", "BDR": "Backup", "DR": "DR", "DROther": "DROther", "Other": "DROther",
         "-": None, "PtP": None, "PointToPoint": None}
STATES = {"Twoway": "2-Way", "ExChange": "Exchange"}
TYPES = {"BROADCAST": "broadcast", "NBMA": "non-broadcast", "POINTOPOINT": "point-to-point",
         "POINTOMULTIPOINT": "point-to-multipoint", "VIRTUALLINK": "virtual",
         "LOOPBACK": "loopback", "broadcast": "broadcast", "nbma": "non-broadcast",
         "ptp": "point-to-point", "ptmp": "point-to-multipoint"}
INTERFACE_STATES = {"BDR": "Backup", "Other": "DROther", "PtP": "Point-to-point",
                    "PointToPoint": "Point-to-point", "Point-To-Point": "Point-to-point"}
BIRD_PROTOCOLS = {"ospf_v2": (2, 0), "ospf_v3": (3, 0), "ospf_v3_ipv4": (3, 64),
                  "ospf_v3_second": (3, 1)}
KEYS = {
    "neighbors": ["version", "instance", "area", "router", "router_name", "interface",
                  "neighbor_id", "neighbor_name", "address", "priority", "state", "role", "dr",
                  "bdr", "evidence"],
    "interfaces": ["version", "instance", "area", "router", "router_name", "interface", "address",
                   "type", "state", "cost", "hello_interval", "dead_interval", "priority", "dr",
                   "bdr", "passive", "neighbors", "full"]}


def load_json(path):
    text = gzip.open(path, "rt").read().strip() if path.exists() else ""
    return json.loads(text) if text else {}


def some(address):
    return None if address in (None, "", "0.0.0.0", "::") else address


def area_of(text):
    text = str(text).split(" ")[0]
    return text if "." in text else str(ipaddress.ip_address(int(text)))


class Router:
    """What a router said, as dictionaries of the keys that are compared."""

    def __init__(self, folder):
        self.folder = folder
        self.addresses = {}
        for interface in load_json(folder / "ip-addr.json.gz"):
            self.addresses[interface["ifname"]] = [
                str(ipaddress.ip_address(each["local"])) for each in interface["addr_info"]]
        self.id = self.router_id()
        self.interfaces, self.neighbors = [], []
        self.read_frr_v2()
        self.read_frr_v3()
        for protocol, (version, instance) in BIRD_PROTOCOLS.items():
            self.read_bird(protocol, version, instance)

    def router_id(self):
        for name in ("ip-ospf.json.gz", "ipv6-ospf6.json.gz"):
            found = load_json(self.folder / name).get("routerId")
            if found:
                return found
        conf = self.folder / "bird.conf"
        return re.search(r"router id (\S+);", conf.read_text())[1] if conf.exists() else None

    def add(self, kind, version, instance, **given):
        getattr(self, kind).append({"version": version, "instance": instance, "router": self.id,
                                    **given})

    def read_frr_v2(self):
        given = load_json(self.folder / "ip-ospf-interface.json.gz").get("interfaces", {})
        for name, each in given.items():
            if "area" not in each:
                continue  # a virtual link that never came up
            kind = TYPES[each["networkType"]]
            self.add("interfaces", 2, 0, interface=name, address=each.get("ipAddress", each.get("localIfUsed")),
                     area=area_of(each["area"]), type=kind, cost=each["cost"],
                     state=INTERFACE_STATES.get(each["state"], each["state"]),
                     hello_interval=(each["timerMsecs"] + 999) // 1000,
                     dead_interval=each["timerDeadSecs"], priority=each["priority"],
                     dr=some(each.get("drAddress")), bdr=some(each.get("bdrAddress")),
                     passive=each.get("timerPassiveIface", False))
        given = load_json(self.folder / "ip-ospf-neighbor-detail.json.gz").get("neighbors", {})
        for neighbor, adjacencies in given.items():
            for each in adjacencies:
                state, role = each["nbrState"].split("/")
                self.add("neighbors", 2, 0, neighbor_id=neighbor, area=area_of(each["areaId"]),
                         interface=each["ifaceName"].split(":")[0], address=each["ifaceAddress"],
                         priority=each["nbrPriority"], state=state, role=ROLES[role],
                         dr=some(each.get("routerDesignatedId")),
                         bdr=some(each.get("routerDesignatedBackupId")))

    def read_frr_v3(self):
        for name, each in load_json(self.folder / "ipv6-ospf6-interface.json.gz").items():
            if not each.get("attachedToArea"):
                continue
            local = [address["address"].split("/")[0] for address in
                     each.get("internetAddress", []) if address["address"].startswith("fe80")]
            state = each["ospf6InterfaceState"]
            self.add("interfaces", 3, each.get("instanceId", 0), interface=name,
                     address=local[0] if local else None,
                     area=area_of(each["areaId"]), cost=each["cost"],
                     type=TYPES[each.get("operatingAsType", each["type"])],
                     state=INTERFACE_STATES.get(state, state),
                     hello_interval=each["timerIntervalsConfigHello"],
                     dead_interval=each["timerIntervalsConfigDead"], priority=each["priority"],
                     dr=some(each.get("dr")), bdr=some(each.get("bdr")))
        short = {}
        for each in load_json(self.folder / "ipv6-ospf6-neighbor.json.gz").get("neighbors", []):
            short[(each["neighborId"], each["interfaceName"])] = each
        for key, each in load_json(self.folder / "ipv6-ospf6-neighbor-detail.json.gz").items():
            neighbor = key.split("%")[0]
            more = short.get((neighbor, each["interface"]))
            state = each["neighborState"]
            given = {"priority": more["priority"], "role": ROLES[more["ifState"]]} if more else {}
            self.add("neighbors", 3, 0, neighbor_id=neighbor, area=area_of(each["area"]),
                     interface=each["interface"], address=each["linkLocalAddress"],
                     state=STATES.get(state, state), dr=some(each["neighborDRouter"]),
                     bdr=some(each["neighborBdRouter"]), **given)

    def read_bird(self, protocol, version, instance):
        path = self.folder / f"{protocol}-interface.txt"
        if not path.exists():
            return
        areas = {}
        named = "IP" if version == 2 else "ID"
        for block in re.split(r"\n(?=Interface|Virtual)", path.read_text())[1:]:
            head, *lines = block.splitlines()
            name = head.split()[2 if head.startswith("Virtual") else 1]
            values = dict(line.strip().split(": ", 1) for line in lines)
            values = {key: value.strip() for key, value in values.items()}
            areas[name] = values.get("Area", "0.0.0.0").split()[0]
            kind = "virtual" if head.startswith("Virtual") else TYPES[values["Type"].split()[0]]
            state = values["State"].split()[0]
            subnet = re.search(r"\(([\d.]+/\d+)\)", head)
            self.add("interfaces", version, instance, interface=name, area=areas[name], type=kind,
                     address=self.bird_address(name, version, subnet),
                     state=INTERFACE_STATES.get(state, state), priority=int(values["Priority"]),
                     cost=int(values["Cost"]), hello_interval=int(values["Hello timer"]),
                     dead_interval=int(values["Dead timer"]), passive="(stub)" in values["State"],
                     dr=some(values.get(f"Designated router ({named})")),
                     bdr=some(values.get(f"Backup designated router ({named})")))
        for line in (self.folder / f"{protocol}-neighbors.txt").read_text().splitlines()[2:]:
            neighbor, priority, state, _, name, address = line.split()
            state, role = state.split("/")
            self.add("neighbors", version, instance, neighbor_id=neighbor, area=areas[name],
                     interface=name, address=address, priority=int(priority), state=state,
                     role=ROLES[role])

    def bird_address(self, name, version, subnet):
        for address in self.addresses.get(name, []):
            if version == 3 and address.startswith("fe80"):
                return address
            if subnet and ipaddress.ip_address(address) in ipaddress.ip_network(subnet[1], False):
                return address
        return None


def listed(program, what, source):
    run = subprocess.run([program, what, "--json", "--from", source], stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, text=True, check=False)
    lines = [json.loads(line) for line in run.stdout.splitlines()]
    for line in lines:
        if list(line) != KEYS[what]:
            raise SystemExit(f"the keys of {what} are {list(line)}")
    return lines


def key_of(what, line, by_name):
    """What a line is known by on both sides: where the source names interfaces, by that."""
    where = line["interface"].split("@")[-1] if by_name else line["address"]
    if what == "interfaces" and line["type"] == "virtual" and not by_name:
        where = "virtual"  # its address is that of any interface
    area = () if by_name else (line["area"],)
    key = (line["version"], line["instance"], line["router"]) + area + (where,)
    return key + ((line["neighbor_id"],) if what == "neighbors" else ())


def differences_of(what, ours, theirs, by_name):
    ours = {key_of(what, line, by_name): line for line in ours}
    seen = set()
    for line in theirs:
        key = key_of(what, line, by_name)
        seen.add(key)
        if key not in ours:
            yield key, "missing"
            continue
        for field, value in line.items():
            if field in ("interface", "address"):
                continue  # in the key, or named otherwise from outside
            if ours[key][field] != value:
                yield key, f"{field} {value} there, {ours[key][field]} here"
    for key in ours:
        if key not in seen:
            yield key, "extra"


def compared(program, network):
    routers = [Router(folder) for folder in sorted((network / "routers").iterdir())]
    for what in ("neighbors", "interfaces"):
        for router in routers:
            theirs = getattr(router, what)
            if theirs:
                ours = listed(program, what, router.folder)
                yield "answers", len(theirs), what, differences_of(what, ours, theirs, True)
        # Loopbacks, passive interfaces and those that are down send nothing.
        theirs = [line for router in routers for line in getattr(router, what)
                  if what == "neighbors" or (not line.get("passive") and
                                             line["state"] not in ("Loopback", "Down"))]
        told = {(line["version"], line["instance"], line["router"]) for line in theirs}
        # late.pcap begins in the middle.
        for source, file in (("packets", "all.pcap"), ("late", "late.pcap")):
            if (network / file).exists():
                ours = [line for line in listed(program, what, network / file)
                        if (line["version"], line["instance"], line["router"]) in told]
                yield source, len(theirs), what, differences_of(what, ours, theirs, False)


def database(program, *words):
    """The ages of LSAs by what tells one instance of one LSA from others."""
    run = subprocess.run([program, "lsdb", "--json", *words], stdout=subprocess.PIPE,
                         stderr=subprocess.DEVNULL, text=True, check=False)
    return {tuple(lsa[key] for key in ("version", "type_name", "lsa_id", "adv_router", "seq_num",
                                       "checksum")): lsa["age"]
            for lsa in map(json.loads, run.stdout.splitlines())}


# Each hop adds a second, and what was lost is sent again after five.
AGE_SLACK = 8


def compared_ages(program, network):
    """How many LSAs were compared, and each whose age is none that the router could have told."""
    events = (network / "events.txt").read_text().splitlines()
    asked, answered = (float(line.split()[0]) for line in events[-2:])
    heard = database(program, "--at", f"{asked:.6f}", "--from", network / "all.pcap")
    count, texts = 0, []
    for folder in sorted((network / "routers").iterdir()):
        for lsa, age in database(program, "--from", folder).items():
            if lsa not in heard:
                continue
            count += 1
            if not -AGE_SLACK <= age - heard[lsa] <= answered - asked + AGE_SLACK:
                texts.append(f"ages {folder.name} {' '.join(map(str, lsa))} age {age} there, "
                             f"{heard[lsa]} here")
    return count, texts


def differences_in(program, network):
    """How many lines were compared, and the text of each difference."""
    lines, texts = compared_ages(program, network)
    for source, count, what, differences in compared(program, network):
        lines += count
        texts += [f"{source} {what} {' '.join(map(str, key))} {how}" for key, how in differences]
    return lines, texts


if __name__ == "__main__":
    known = pathlib.Path(__file__).with_name("list_differences.txt")
    sys.exit(status_of(known, "lines", differences_in))
