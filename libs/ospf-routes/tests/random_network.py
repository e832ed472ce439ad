"""Databases of random networks: of either version, of up to 60 routers in up to five areas, with
all that a calculation can meet, sound or not. The same seed gives the same database."""

import ipaddress
import random


def number(text):
    return int(ipaddress.IPv4Address(text))


class RandomNetwork:
    def __init__(self, seed, most_routers=60):
        self.random = random.Random(seed)
        self.version = self.random.choice([2, 2, 3])
        self.family = "ipv4" if self.version == 2 or self.random.random() < 0.15 else "ipv6"
        self.cost = self.random.choice([2, 4, 10, 1000])
        self.next_subnet = 0
        self.next_interface = {}
        self.linked = []
        self.interfaces = {}
        count = self.random.randint(2, most_routers)
        self.routers = [number("10.255.0.0") + n for n in
                        self.random.sample(range(1, 4 * count + 1), count)]
        self.make_areas()
        for area in self.areas:
            self.make_links(area)
        self.make_virtual_links()
        self.make_prefixes()
        self.make_summaries()
        self.make_externals()
        self.break_something()

    def chance(self, probability):
        return self.random.random() < probability

    def make_areas(self):
        count = self.random.choice([1, 1, 2, 3, 4, 5])
        self.areas = []
        for at in range(count):
            self.areas.append({
                "id": at if self.chance(0.9) else at + self.random.choice([0, 7]),
                "routers": [], "networks": [], "summaries": [], "boundaries": [], "nssa": [],
                "links": [], "prefix_lsas": []})
        if self.chance(0.05):
            self.areas[0]["id"] = 99  # no backbone
        # Every area has members; routers of two areas or more are border routers.
        self.members = [set() for _ in self.areas]
        for router in self.routers:
            self.members[self.random.randrange(count)].add(router)
        for at in range(1, count):
            pool = sorted(self.members[self.random.choice([0, 0, 0, at - 1])]) or self.routers
            for router in self.random.sample(pool, min(len(pool), self.random.randint(1, 3))):
                self.members[at].add(router)
        self.borders = {router for router in self.routers
                        if sum(router in members for members in self.members) > 1}
        self.boundary_routers = {router for router in self.routers if self.chance(0.2)}
        for at, area in enumerate(self.areas):
            takes = area["id"] == 0 or self.chance(0.7)
            area_routers = sorted(self.members[at])
            for router in area_routers:
                area["routers"].append({
                    "router": router, "id": router if self.version == 2 else 0,
                    "border": router in self.borders, "boundary": router in self.boundary_routers,
                    "virtual_end": False, "takes_externals": takes,
                    "forwards": self.version == 2 or not self.chance(0.04),
                    "in_family": self.version == 2 or not self.chance(0.01), "links": []})
            if self.version == 3 and self.chance(0.2) and area_routers:
                # A router whose links take a second LSA.
                first = self.random.choice(area["routers"])
                area["routers"].append(dict(first, id=1, links=[]))

    def lsa_of(self, area, router):
        return self.random.choice([lsa for lsa in area["routers"] if lsa["router"] == router])

    def metric(self):
        return self.random.choice([self.random.randint(1, self.cost), self.random.randint(1, 3)])

    def new_interface(self, router):
        self.next_interface[router] = self.next_interface.get(router, 1) + 1
        return self.next_interface[router]

    def subnet(self):
        self.next_subnet += 1
        return number("10.0.0.0") + 16 * self.next_subnet

    def address(self, area, router, interface):
        """The link-LSA of an interface of OSPFv3."""
        if self.version == 2 or self.chance(0.03):
            return
        text = f"fe80::{router & 0xffff:x}:{interface:x}"
        if self.family == "ipv4":
            own = (router & 0xfff) * 256 + interface
            text = str(ipaddress.IPv4Address(number("10.128.0.0") + own))
        area["links"].append({"router": router, "interface": interface, "address": text,
                              "prefixes": []})

    def make_links(self, area):
        members = sorted({lsa["router"] for lsa in area["routers"]})
        if len(members) < 2:
            return
        joined = [members[0]]
        for router in members[1:]:
            self.link(area, self.random.choice(joined), router)
            joined.append(router)
        for _ in range(self.random.randint(0, len(members))):
            a, b = self.random.sample(members, 2)
            for _ in range(self.random.choice([1, 1, 1, 2, 3])):
                self.link(area, a, b)
        for _ in range(self.random.randint(0, len(members) // 2)):
            self.network(area, self.random.sample(members,
                                                  min(len(members), self.random.randint(1, 6))))

    def link(self, area, a, b):
        subnet = self.subnet()
        unnumbered = self.version == 2 and self.chance(0.15)
        ends = []
        for at, router in enumerate((a, b)):
            interface = self.new_interface(router)
            if self.version == 2 and not unnumbered:
                interface = subnet + 1 + at
            self.address(area, router, interface)
            ends.append(interface)
        metrics = [self.metric(), self.metric()]
        if self.chance(0.6):
            metrics[1] = metrics[0]
        for at, (router, other) in enumerate(((a, b), (b, a))):
            if self.chance(0.02):
                continue  # one end does not speak of it
            lsa = self.lsa_of(area, router)
            lsa["links"].append({
                "type": 1, "neighbor": other, "interface": ends[at],
                "neighbor_interface": ends[1 - at] if self.version == 3 else 0,
                "metric": metrics[at], "stub": None})
            if self.version == 2 and not unnumbered and self.chance(0.8):
                self.stub(area, router, f"{ipaddress.IPv4Address(subnet)}/30", metrics[at])
        if not unnumbered:
            self.linked.append((area, a, subnet))

    def stub(self, area, router, prefix, metric):
        if self.version == 2:
            self.lsa_of(area, router)["links"].append(
                {"type": 3, "neighbor": 0, "interface": 0, "neighbor_interface": 0,
                 "metric": metric, "stub": prefix})

    def network(self, area, routers):
        subnet = self.subnet()
        designated = routers[0]
        interfaces = {}
        for at, router in enumerate(routers):
            interfaces[router] = [subnet + 1 + at if self.version == 2
                                  else self.new_interface(router)]
            if self.chance(0.05):
                interfaces[router].append(subnet + 9 + at % 6 if self.version == 2
                                          else self.new_interface(router))
        identifier = interfaces[designated][0]
        attached = [router for router in routers if not self.chance(0.02)]
        if not self.chance(0.02):
            area["networks"].append({"router": designated, "id": identifier, "attached": attached,
                                     "length": 0 if self.version == 3 else
                                     32 if self.chance(0.1) else 28})
        self.interfaces[(area["id"], designated, identifier)] = interfaces
        for router in routers:
            for interface in interfaces[router]:
                if self.chance(0.02):
                    continue
                self.lsa_of(area, router)["links"].append({
                    "type": 2, "neighbor": 0 if self.version == 2 else designated,
                    "neighbor_interface": identifier, "interface": interface,
                    "metric": self.metric(), "stub": None})
                self.address(area, router, interface)
        self.linked.append((area, designated, subnet))

    def make_virtual_links(self):
        if self.areas[0]["id"] != 0:
            return
        backbone = {lsa["router"]: lsa for lsa in self.areas[0]["routers"]}
        for area in self.areas[1:]:
            ends = sorted({lsa["router"] for lsa in area["routers"]} & set(backbone))
            if len(ends) < 2 or not self.chance(0.5):
                continue
            pair = self.random.sample(ends, 2)
            for router, other in (pair, pair[::-1]):
                own = [link["interface"] for lsa in area["routers"] if lsa["router"] == router
                       for link in lsa["links"] if link["type"] != 3] or [77]
                interface = self.random.choice(own) if self.version == 2 else 1000 + area["id"]
                backbone[router]["links"].append({
                    "type": 4, "neighbor": other, "interface": interface, "stub": None,
                    "neighbor_interface": 1000 + area["id"] if self.version == 3 else 0,
                    "metric": self.metric()})
                for lsa in area["routers"]:
                    if lsa["router"] == router:
                        lsa["virtual_end"] = not self.chance(0.1)

    def prefix(self, n=None):
        """One of a few, so that they meet."""
        n = self.random.randint(0, 60) if n is None else n
        length = self.random.choice([24, 24, 24, 25, 20])
        if self.family == "ipv4":
            return str(ipaddress.ip_network((number("172.16.0.0") + 256 * n, length), strict=False))
        length = {24: 64, 25: 80, 20: 48}[length]
        return str(ipaddress.ip_network(((0x20010DB8 << 96) + (n << 64), length), strict=False))

    def host(self, router):
        if self.family == "ipv4":
            return str(ipaddress.IPv4Address(router))
        return str(ipaddress.IPv6Address((0x20010DB8FFFF << 80) + router))

    def address_in(self, prefix):
        network = ipaddress.ip_network(prefix)
        return str(network.network_address + self.random.randint(1, 5))

    def make_prefixes(self):
        """Stub networks and loopbacks; in OSPFv3 all prefixes there are."""
        self.known = ["0.0.0.0/0" if self.family == "ipv4" else "::/0"]
        bits = 32 if self.family == "ipv4" else 128
        for area in self.areas:
            for router in sorted({lsa["router"] for lsa in area["routers"]}):
                own = [(self.prefix(), self.metric()) for _ in range(self.random.randint(0, 2))]
                if self.chance(0.5):
                    own.append((f"{self.host(router)}/{bits}", 0))
                self.known += [prefix for prefix, _ in own]
                for prefix, metric in own:
                    self.stub(area, router, prefix, metric)
                if self.version == 3 and own:
                    self.prefix_lsa(area, router, None, own)
                    for lsa in area["links"]:
                        if lsa["router"] == router and self.chance(0.5):
                            lsa["prefixes"].append(own[0][0])
            if self.version == 3:
                for lsa in area["networks"]:
                    if self.chance(0.8):
                        own = [(self.prefix(), 0)]
                        self.known.append(own[0][0])
                        self.prefix_lsa(area, lsa["router"], lsa["id"], own)
        for area, _, subnet in self.linked:
            if self.family == "ipv4" and self.version == 2:
                self.known.append(f"{ipaddress.IPv4Address(subnet)}/28")

    def prefix_lsa(self, area, router, network, own):
        area["prefix_lsas"].append({
            "router": router, "of_network": network is not None,
            "referenced_router": router if not self.chance(0.01) else router + 1,
            "referenced_id": network or 0,
            "prefixes": [{"prefix": prefix, "metric": metric,
                          "options": self.random.choice([0, 0, 0, 0, 2, 8, 1])}
                         for prefix, metric in own]})

    def make_summaries(self):
        for area in self.areas:
            routers = sorted({lsa["router"] for lsa in area["routers"]})
            borders = [router for router in routers if router in self.borders]
            if not borders:
                continue
            for _ in range(self.random.randint(0, 4 * len(routers))):
                said = self.random.choice(self.known + [self.prefix() for _ in range(5)])
                for router in self.random.sample(borders, self.random.randint(1, len(borders))):
                    area["summaries"].append({
                        "router": router if not self.chance(0.03) else self.random.choice(
                            routers + [1]),
                        "prefix": said,
                        "metric": 0xFFFFFF if self.chance(0.03) else self.metric(),
                        "options": 1 if self.version == 3 and self.chance(0.03) else 0})
            for boundary in sorted(self.boundary_routers):
                for router in borders:
                    if self.chance(0.4):
                        area["boundaries"].append({
                            "router": router, "boundary": boundary,
                            "metric": 0xFFFFFF if self.chance(0.03) else self.metric()})

    def external(self, router):
        prefix = self.random.choice([self.prefix(self.random.randint(40, 80)), self.prefix(),
                                     self.random.choice(self.known), self.known[0]])
        forwarding = None
        if self.chance(0.4):
            forwarding = self.address_in(self.random.choice(self.known[1:] or [self.prefix()]))
        return {"router": router, "prefix": prefix, "type_2": self.chance(0.6),
                "metric": 0xFFFFFF if self.chance(0.02) else self.random.choice([1, 2, 10, 20]),
                "forwarding": forwarding, "tag": self.random.choice([0, 7, 4000000000]),
                "options": 1 if self.version == 3 and self.chance(0.02) else 0,
                "propagate": False}

    def make_externals(self):
        self.externals = []
        for router in sorted(self.boundary_routers):
            for _ in range(self.random.randint(0, 6)):
                self.externals.append(self.external(router))
        for area in self.areas:
            if area["id"] == 0 or not self.chance(0.4):
                continue
            routers = sorted({lsa["router"] for lsa in area["routers"]})
            for router in routers:
                if router in self.boundary_routers or router in self.borders:
                    for _ in range(self.random.randint(0, 4)):
                        area["nssa"].append(dict(self.external(router),
                                                 propagate=self.chance(0.6)))
        # The same externals from elsewhere, as translators and second sources make them.
        if self.boundary_routers:
            for lsa in list(self.externals) + [lsa for area in self.areas for lsa in area["nssa"]]:
                if self.chance(0.3):
                    self.externals.append(dict(
                        lsa, router=self.random.choice(sorted(self.boundary_routers)),
                        propagate=False))

    def break_something(self):
        for area in self.areas:
            if area["routers"] and self.chance(0.1):
                area["routers"].remove(self.random.choice(area["routers"]))
            if area["networks"] and self.chance(0.1):
                area["networks"].remove(self.random.choice(area["networks"]))
            for kind in ("routers", "networks", "summaries", "links"):
                self.random.shuffle(area[kind])

    def database(self):
        return {"version": self.version, "family": self.family, "rfc1583": self.chance(0.3),
                "areas": self.areas, "externals": self.externals}


def random_database(seed, most_routers=60):
    return RandomNetwork(seed, most_routers).database()
