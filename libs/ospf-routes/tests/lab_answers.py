"""What routers of a recorded network said of their routes, in one form for all daemons: a
dictionary from prefix to route for each router, version and instance. A route is a dictionary with
kind ("intra", "inter", "type-1", "type-2"), cost, type2_cost, tag, area, metric (type2_cost or cost,
as the kind has it) and next_hops, a set of (address or None, interface name). What the daemon did
not tell is not in it."""

import gzip
import ipaddress
import json
import pathlib
import re


def load_json(path):
    """The answer, or nothing where a daemon that does not run gave an empty one."""
    with gzip.open(path, "rt") as file:
        text = file.read().strip()
    return json.loads(text) if text else {}


def frr_v2(answer):
    kinds = {"N": "intra", "N IA": "inter", "N E1": "type-1", "N E2": "type-2"}
    routes = {}
    for prefix, given in answer.items():
        if "/" not in prefix or given["routeType"] not in kinds:
            continue  # routers, and discarded ranges
        route = {"kind": kinds[given["routeType"]], "cost": given["cost"], "next_hops": set()}
        for key, ours in (("type2cost", "type2_cost"), ("tag", "tag"), ("area", "area")):
            if key in given:
                route[ours] = given[key]
        for hop in given["nexthops"]:
            if "via" in hop:
                route["next_hops"].add((hop["ip"], hop["via"]))
            else:
                route["next_hops"].add((None, hop.get("directlyAttachedTo")))
        routes[prefix] = route
    return routes


def frr_v3(answer, installed):
    """ospf6d says a prefix once, and of several routes to it the worst, which is then not the best
    one. Of such a prefix what it installed counts, which has no kind."""
    kinds = {"IA": "intra", "IE": "inter", "E1": "type-1", "E2": "type-2"}
    routes = {}
    for prefix, given in answer.get("routes", {}).items():
        route = routes[prefix] = {}
        if given["isBestRoute"]:
            route["kind"] = kinds[given["pathType"]]
            if given["nextHops"]:
                route["next_hops"] = {(None if hop["nextHop"] == "::" else hop["nextHop"],
                                       hop["interfaceName"]) for hop in given["nextHops"]}
    for prefix, entries in installed.items():
        for given in entries:
            if given["protocol"] != "ospf6":
                continue
            route = routes.setdefault(prefix, {})
            route["metric"] = given["metric"]
            if "next_hops" not in route:
                # Those of a discarded range have no interface.
                route["next_hops"] = {(hop.get("ip"), hop["interfaceName"])
                                      for hop in given["nexthops"] if "interfaceName" in hop}
    return routes


def bird(text):
    kinds = {"I": "intra", "IA": "inter", "E1": "type-1", "E2": "type-2"}
    routes = {}
    prefix = route = None
    for line in text.splitlines():
        head = re.match(r"(\S*)\s+(unicast|unreachable|blackhole|prohibit) \[\S+ [^\]]*\]( \*)? "
                        r"(\S+) \(\d+/(\d+)(?:/(\d+))?\)", line)
        if head:
            prefix = head[1] or prefix
            route = None
            if head[2] == "unicast" and prefix not in routes:
                route = routes[prefix] = {"kind": kinds[head[4]], "cost": int(head[5]),
                                          "next_hops": set()}
                if head[4] == "E2":
                    route["type2_cost"] = int(head[6])
            continue
        if route is None:
            continue
        via = re.match(r"\s+(?:via (\S+) on|dev) (\S+)", line)
        if via:
            route["next_hops"].add((via[1], via[2]))
        tag = re.match(r"\s+OSPF\.tag: (\S+)", line)
        if tag:
            route["tag"] = int(tag[1], 16)
    return routes


class Router:
    def __init__(self, folder):
        self.folder = folder
        self.names = {}
        self.indices = {}
        addresses = folder / "ip-addr.json.gz"
        self.has_names = addresses.exists()
        for interface in load_json(addresses) if self.has_names else []:
            self.indices[interface["ifindex"]] = interface["ifname"]
            for each in interface["addr_info"]:
                local = str(ipaddress.ip_address(each["local"]))
                self.names.setdefault(local, []).append(interface["ifname"])
        self.id = self.router_id()

    def router_id(self):
        for name in ("ip-ospf.json.gz", "ipv6-ospf6.json.gz"):
            if (self.folder / name).exists():
                found = load_json(self.folder / name).get("routerId")
                if found:
                    return found
        for name, pattern in (("bird.conf", r"router id (\S+);"),
                              ("frr.conf", r"router-id (\S+)")):
            if (self.folder / name).exists():
                return re.search(pattern, (self.folder / name).read_text())[1]
        raise SystemExit(f"{self.folder}: nothing tells its router ID")

    def answers(self):
        """((version, instance), routes) of each protocol that runs here."""
        v2, v3 = self.folder / "ip-ospf-route.json.gz", self.folder / "ipv6-ospf6-route.json.gz"
        if v2.exists():
            yield (2, 0), frr_v2(load_json(v2))
        if v3.exists():
            installed = self.folder / "ipv6-route-ospf6.json.gz"
            yield (3, self.frr_instance()), frr_v3(
                load_json(v3), load_json(installed) if installed.exists() else {})
        for name, instance in (("v2", (2, 0)), ("v3", (3, 0)), ("v3_ipv4", (3, 64)),
                               ("v3_second", (3, 1))):
            file = self.folder / f"ospf_{name}-route-all.txt"
            if file.exists():
                yield instance, bird(file.read_text())

    def frr_instance(self):
        """That of its interfaces, which are all of one."""
        file = self.folder / "ipv6-ospf6-interface.json.gz"
        found = {each.get("instanceId", 0) for each in load_json(file).values()
                 if each.get("attachedToArea")} if file.exists() else set()
        return found.pop() if len(found) == 1 else 0

    def interface_names(self, interface):
        """Names that an interface of ours may have here; nothing when anything may do."""
        if interface is None:
            return None
        if interface.startswith("number "):
            return [self.indices.get(int(interface.split()[1]))]
        return self.names.get(interface)


def routers_of(network):
    return [Router(folder) for folder in sorted(pathlib.Path(network, "routers").iterdir())]
