"""Routing tables out of link-state databases, a second time: plain dictionaries and sets, no regard
for speed, no code in common with the library. What the tests hold the library against.

A database is a dictionary as random_network.py makes it. routes(database, router) gives a
dictionary from prefix to (kind, cost, type-2 cost, tag, area, next hops); a next hop is (interface,
address), where the interface is "number N", an address or None and the address may be None.
"""

import ipaddress

INFINITE = 0xFFFFFF
KINDS = ["intra", "inter", "external-1", "external-2", "nssa-1", "nssa-2"]


def quad(number):
    return str(ipaddress.IPv4Address(number))


def contains(prefix, address):
    return ipaddress.ip_address(address) in ipaddress.ip_network(prefix)


class AreaView:
    """One area: who is next to whom at what cost."""

    def __init__(self, database, area):
        self.version = database["version"]
        self.id = area["id"]
        self.lsa = area
        self.routers = {}
        for lsa in area["routers"]:
            if not lsa["in_family"]:
                continue
            known = self.routers.setdefault(lsa["router"], [])
            if all(other["id"] != lsa["id"] for other in known):
                known.append(lsa)
        self.networks = {}
        for lsa in area["networks"]:
            key = (0 if self.version == 2 else lsa["router"], lsa["id"])
            self.networks.setdefault(key, lsa)
        self.link_lsas = {}
        for lsa in area["links"]:
            self.link_lsas.setdefault((lsa["router"], lsa["interface"]), lsa)

    def flag(self, router, name):
        return any(lsa[name] for lsa in self.routers[router])

    def forwards(self, router):
        return all(lsa["forwards"] for lsa in self.routers[router])

    def links(self, router):
        return [link for lsa in sorted(self.routers[router], key=lambda lsa: lsa["id"])
                for link in lsa["links"]]

    def between(self, router, other):
        """Links of a router to another one, in order."""
        return [link for link in self.links(router)
                if link["type"] in (1, 4) and link["neighbor"] == other]

    def on_network(self, router, network):
        return [link for link in self.links(router)
                if link["type"] == 2
                and (link["neighbor"], link["neighbor_interface"]) == network]

    def counts(self, router, link):
        """Whether the other end speaks of the link too."""
        if link["type"] == 2:
            network = (link["neighbor"], link["neighbor_interface"])
            return network in self.networks and router in self.networks[network]["attached"]
        other = link["neighbor"]
        if other not in self.routers:
            return False
        back = self.between(other, router)
        if self.version == 2:
            return bool(back)
        return self.other_end(router, link) is not None

    def other_end(self, router, link):
        """The link of the other router that is the other end of this one."""
        other = link["neighbor"]
        mine = [each for each in self.between(router, other) if each["type"] == link["type"]]
        theirs = [each for each in self.between(other, router) if each["type"] == link["type"]]
        pairs = []
        for i, one in enumerate(mine):
            for j, two in enumerate(theirs):
                if self.version == 2:
                    # The order of two equal distances is that of the router with the lower ID.
                    order = (i, j) if router < other else (j, i)
                    pairs.append((one["interface"] ^ two["interface"], order, i, j))
                elif (one["interface"], one["neighbor_interface"]) == (
                        two["neighbor_interface"], two["interface"]):
                    order = (i, j) if router < other else (j, i)
                    pairs.append((0, order, i, j))
        taken_i, taken_j = set(), set()
        for _, _, i, j in sorted(pairs):
            if i in taken_i or j in taken_j:
                continue
            taken_i.add(i)
            taken_j.add(j)
            if mine[i] is link:
                return theirs[j]
        return None

    def steps(self, vertex, root):
        """(vertex, cost, link) next to a vertex: ("r", id) or ("n", key)."""
        kind, name = vertex
        if kind == "r":
            if name != root and not self.forwards(name):
                return
            for link in self.links(name):
                if link["type"] == 3 or not self.counts(name, link):
                    continue
                if link["type"] == 2:
                    network = (link["neighbor"], link["neighbor_interface"])
                    yield ("n", network), link["metric"], link
                else:
                    yield ("r", link["neighbor"]), link["metric"], link
        else:
            for router in set(self.networks[name]["attached"]):
                if router in self.routers and self.on_network(router, name):
                    yield ("r", router), 0, None

    def address(self, router, interface):
        if self.version == 2:
            return quad(interface) if interface >= 0x01000000 else None
        lsa = self.link_lsas.get((router, interface))
        return lsa["address"] if lsa else None

    def interface(self, router, interface):
        return self.address(router, interface) or f"number {interface}"

    def prefixes(self):
        """(vertex, prefix, metric) of everything that hangs on the graph."""
        if self.version == 2:
            for key, lsa in self.networks.items():
                if lsa["length"] != 32:
                    network = ipaddress.ip_network((lsa["id"], lsa["length"]), strict=False)
                    yield ("n", key), str(network), 0
            for router in self.routers:
                for link in self.links(router):
                    if link["type"] == 3:
                        yield ("r", router), link["stub"], link["metric"]
            return
        for lsa in self.lsa["prefix_lsas"]:
            if lsa["referenced_router"] != lsa["router"]:
                continue
            if lsa["of_network"]:
                vertex = ("n", (lsa["referenced_router"], lsa["referenced_id"]))
                if vertex[1] not in self.networks:
                    continue
            else:
                vertex = ("r", lsa["referenced_router"])
                if vertex[1] not in self.routers:
                    continue
            for entry in lsa["prefixes"]:
                if entry["options"] & 1 == 0:
                    yield vertex, entry["prefix"], entry["metric"]


class Tree:
    """Distances from the root through one area, and next hops (interface, address, attached)."""

    def __init__(self, view, root, others):
        self.view = view
        self.root = root
        start = ("r", root)
        edges = {}
        self.distance = {start: 0}
        # Distances first, by relaxing until nothing moves.
        moved = {start}
        while moved:
            again = set()
            for vertex in moved:
                if vertex not in edges:
                    edges[vertex] = list(view.steps(vertex, root))
                for to, cost, _ in edges[vertex]:
                    length = self.distance[vertex] + cost
                    if length < self.distance.get(to, float("inf")):
                        self.distance[to] = length
                        again.add(to)
            moved = again
        # Then next hops, from near to far, networks before routers.
        into = {}
        for vertex in self.distance:
            for to, cost, link in edges[vertex]:
                if to != start and self.distance[vertex] + cost == self.distance[to]:
                    into.setdefault(to, []).append((vertex, link))
        self.hops = {start: set()}
        own_networks = {}
        for vertex in sorted(self.distance, key=lambda v: (self.distance[v], v[0] == "r")):
            if vertex == start:
                continue
            hops = set()
            for parent, link in into[vertex]:
                if parent == start:
                    if vertex[0] == "n":
                        interface = view.interface(root, link["interface"])
                        own_networks.setdefault(vertex, set()).add(interface)
                        hops.add((interface, None, True))
                    elif link["type"] == 4:
                        hops |= self.across_virtual(link, others)
                    else:
                        end = view.other_end(root, link)
                        address = end and view.address(vertex[1], end["interface"])
                        hops.add((view.interface(root, link["interface"]), address, False))
                    continue
                hops |= {hop for hop in self.hops[parent] if not hop[2]}
                for interface in own_networks.get(parent, ()):
                    for link in view.on_network(vertex[1], parent[1]):
                        hops.add((interface, view.address(vertex[1], link["interface"]), False))
            self.hops[vertex] = hops

    def across_virtual(self, link, others):
        best = None
        for tree in others:
            end = ("r", link["neighbor"])
            if end not in tree.distance:
                continue
            own = [each["interface"] for each in tree.view.links(self.root) if each["type"] != 3]
            rank = (link["interface"] not in own, tree.distance[end] != link["metric"],
                    tree.distance[end])
            if best is None or rank < best[0]:
                best = (rank, tree.hops[end])
        return best[1] if best else set()

    def reached_routers(self):
        return [name for kind, name in self.distance if kind == "r"]


class Calculation:
    def __init__(self, database, root):
        self.database = database
        self.root = root
        self.version = database["version"]
        self.rfc1583 = database["rfc1583"]
        self.host = 32 if database["family"] == "ipv4" else 128
        views = [AreaView(database, area)
                 for area in sorted(database["areas"], key=lambda area: area["id"])]
        views = [view for view in views if root in view.routers]
        self.trees = [Tree(view, root, []) for view in views if view.id != 0]
        self.trees += [Tree(view, root, list(self.trees)) for view in views if view.id == 0]
        self.is_border = any(view.flag(root, "border") for view in views)
        self.table = {}

    # What a router says of its own prefix and addresses.
    def own_interface(self, view, prefix):
        if self.version == 3:
            for lsa in sorted(view.lsa["links"], key=lambda lsa: (lsa["router"], lsa["interface"])):
                if lsa["router"] == self.root and prefix in lsa["prefixes"]:
                    return lsa["address"]
        else:
            for link in view.links(self.root):
                address = view.address(self.root, link["interface"]) if link["type"] != 3 else None
                if address and contains(prefix, address):
                    return address
        network = ipaddress.ip_network(prefix)
        return str(network.network_address) if network.prefixlen == self.host else None

    def own_addresses(self):
        found = set()
        for tree in self.trees:
            view = tree.view
            if self.version == 2:
                for link in view.links(self.root):
                    if link["type"] != 3 and view.address(self.root, link["interface"]):
                        found.add(view.address(self.root, link["interface"]))
            for vertex, prefix, _ in view.prefixes():
                network = ipaddress.ip_network(prefix)
                if vertex == ("r", self.root) and network.prefixlen == self.host:
                    found.add(str(network.network_address))
        return found

    def intra(self):
        for tree in self.trees:
            for vertex, prefix, metric in tree.view.prefixes():
                if vertex not in tree.distance:
                    continue
                cost = tree.distance[vertex] + metric
                if vertex == ("r", self.root):
                    hops = {(self.own_interface(tree.view, prefix), None, True)}
                else:
                    hops = tree.hops[vertex]
                self.offer(prefix, "intra", cost, tree.view.id, hops)

    def offer(self, prefix, kind, cost, area, hops):
        old = self.table.get(prefix)
        if old is None or cost < old["cost"]:
            self.table[prefix] = {"kind": kind, "cost": cost, "area": area, "hops": set(hops),
                                  "type2": 0, "tag": 0}
        elif cost == old["cost"]:
            old["hops"] |= hops
            old["area"] = min(old["area"], area)

    def said_by_root(self, view, prefix):
        return any(lsa["router"] == self.root and lsa["prefix"] == prefix
                   and lsa["metric"] < INFINITE and lsa["options"] & 1 == 0
                   for lsa in view.lsa["summaries"])

    def border_distance(self, tree, router):
        vertex = ("r", router)
        if router == self.root or vertex not in tree.distance:
            return None
        return tree.distance[vertex] if tree.view.flag(router, "border") else None

    def inter(self, examined):
        inside = set(self.table)
        for tree in examined:
            for lsa in tree.view.lsa["summaries"]:
                distance = self.border_distance(tree, lsa["router"])
                if (distance is None or lsa["metric"] >= INFINITE or lsa["options"] & 1
                        or lsa["prefix"] in inside):
                    continue
                if (tree.view.id == 0 and self.is_border
                        and self.said_by_root(tree.view, lsa["prefix"])):
                    continue
                self.offer(lsa["prefix"], "inter", distance + lsa["metric"], tree.view.id,
                           tree.hops[("r", lsa["router"])])

    def boundaries(self, examined):
        """For each area the paths to AS boundary routers: (cost, hops, whether intra-area)."""
        self.paths = {}
        for tree in self.trees:
            paths = {}
            for router in tree.reached_routers():
                if router != self.root and tree.view.flag(router, "boundary"):
                    vertex = ("r", router)
                    paths[router] = [tree.distance[vertex], tree.hops[vertex], True]
            if tree in examined:
                for lsa in tree.view.lsa["boundaries"]:
                    distance = self.border_distance(tree, lsa["router"])
                    if distance is None or lsa["metric"] >= INFINITE:
                        continue
                    cost, hops = distance + lsa["metric"], tree.hops[("r", lsa["router"])]
                    old = paths.get(lsa["boundary"])
                    if old is None or (not old[2] and cost < old[0]):
                        paths[lsa["boundary"]] = [cost, hops, False]
                    elif not old[2] and cost == old[0]:
                        old[1] = old[1] | hops
            self.paths[tree.view.id] = paths

    def transit(self):
        for tree in self.trees:
            if tree.view.id == 0 or not any(tree.view.flag(router, "virtual_end")
                                            for router in tree.reached_routers()):
                continue
            for lsa in tree.view.lsa["summaries"]:
                distance = self.border_distance(tree, lsa["router"])
                entry = self.table.get(lsa["prefix"])
                if (distance is None or lsa["metric"] >= INFINITE or lsa["options"] & 1
                        or entry is None or entry["area"] != 0):
                    continue
                cost, hops = distance + lsa["metric"], tree.hops[("r", lsa["router"])]
                if cost < entry["cost"]:
                    entry["cost"], entry["hops"] = cost, set(hops)
                elif cost == entry["cost"]:
                    entry["hops"] |= hops
            for lsa in tree.view.lsa["boundaries"]:
                distance = self.border_distance(tree, lsa["router"])
                path = self.paths[0].get(lsa["boundary"])
                if distance is None or lsa["metric"] >= INFINITE or path is None:
                    continue
                cost, hops = distance + lsa["metric"], tree.hops[("r", lsa["router"])]
                if cost < path[0]:
                    path[0], path[1] = cost, set(hops)
                elif cost == path[0]:
                    path[1] = path[1] | hops

    def boundary_for_externals(self, router):
        """The path that counts and whether 16.4.1 ranks it second."""
        found = []
        for tree in self.trees:
            path = self.paths[tree.view.id].get(router)
            if path is None or not tree.view.flag(self.root, "takes_externals"):
                continue
            second = not path[2] or tree.view.id == 0
            found.append(((second and not self.rfc1583, path[0], -tree.view.id), path, second))
        return min(found, key=lambda each: each[0])[1:] if found else (None, False)

    def inside_route(self, address):
        covering = [prefix for prefix in self.table if contains(prefix, address)]
        if not covering:
            return None
        return self.table[max(covering, key=lambda prefix: ipaddress.ip_network(prefix).prefixlen)]

    def externals(self):
        own = self.own_addresses()
        candidates = {}
        sources = [(None, lsa) for lsa in self.database["externals"]]
        for tree in self.trees:
            sources += [(tree.view, lsa) for lsa in tree.view.lsa["nssa"]]
        for view, lsa in sources:
            prefix = lsa["prefix"]
            if (prefix in self.table or lsa["metric"] >= INFINITE or lsa["options"] & 1
                    or lsa["router"] == self.root or lsa["forwarding"] in own):
                continue
            if view is None:
                path, second = self.boundary_for_externals(lsa["router"])
            else:
                path, second = self.paths[view.id].get(lsa["router"]), False
                if self.is_border and ipaddress.ip_network(prefix).prefixlen == 0:
                    if not lsa["propagate"] or self.said_by_root(view, prefix):
                        continue
            if path is None:
                continue
            cost, hops = path[0], path[1]
            if lsa["forwarding"]:
                entry = self.inside_route(lsa["forwarding"])
                if entry is None:
                    continue
                if view is not None and (entry["kind"] != "intra" or entry["area"] != view.id):
                    continue
                cost = entry["cost"]
                hops = {(interface, lsa["forwarding"], False) if attached
                        else (interface, address, False)
                        for interface, address, attached in entry["hops"]}
                second = entry["kind"] != "intra" or entry["area"] == 0
            kind = ("nssa-" if view else "external-") + ("2" if lsa["type_2"] else "1")
            total = cost if lsa["type_2"] else cost + lsa["metric"]
            type2 = lsa["metric"] if lsa["type_2"] else 0
            rank = (lsa["type_2"], type2, second and not self.rfc1583, total)
            source = 1 if view is None else 0 if lsa["propagate"] else 2
            candidates.setdefault(prefix, []).append(
                (rank, (source, -lsa["router"]), kind, total, type2, lsa["tag"],
                 view.id if view else 0, hops))
        for prefix, paths in candidates.items():
            best = min(path[0] for path in paths)
            paths = [path for path in paths if path[0] == best]
            first = min(paths, key=lambda path: path[1])
            self.table[prefix] = {"kind": first[2], "cost": first[3], "type2": first[4],
                                  "tag": first[5], "area": first[6],
                                  "hops": set().union(*(path[7] for path in paths))}

    def run(self):
        self.intra()
        active = any(tree.view.id == 0 and len(tree.reached_routers()) > 1 for tree in self.trees)
        examined = self.trees
        if self.is_border and active:
            examined = [tree for tree in self.trees if tree.view.id == 0]
        self.inter(examined)
        self.boundaries(examined)
        if self.is_border and active:
            self.transit()
        self.externals()
        return {prefix: (entry["kind"], entry["cost"], entry["type2"], entry["tag"], entry["area"],
                         frozenset((interface, address) for interface, address, _ in entry["hops"]))
                for prefix, entry in self.table.items()}


def routes(database, router):
    return Calculation(database, router).run()
