"""What if, a second time: a changed database, made by plain means. Summaries follow the costs of
the routers that make them, as far as they were these costs before."""

import copy
import ipaddress

import reference


def links_between(area, one, two, kind):
    return [(lsa, link) for lsa in area["routers"] if lsa["router"] == one
            for link in lsa["links"] if link["type"] == kind and link["neighbor"] == two]


def inside(stub, interface):
    network = ipaddress.ip_network(stub)
    return (interface >= 1 << 24 and network.prefixlen < 32
            and ipaddress.IPv4Address(interface) in network)


def without_link(database, a, b):
    """False when there is no point-to-point link between the two."""
    found = False
    for area in database["areas"]:
        for one, two in ((a, b), (b, a)):
            for lsa, link in links_between(area, one, two, 1):
                found = True
                if database["version"] == 2:
                    lsa["links"] = [each for each in lsa["links"] if each["type"] != 3
                                    or not inside(each["stub"], link["interface"])]
                else:
                    host = 32 if database["family"] == "ipv4" else 128
                    gone = {prefix for each in area["links"] for prefix in each["prefixes"]
                            if (each["router"], each["interface"]) == (one, link["interface"])}
                    for each in area["prefix_lsas"]:
                        if each["router"] == one and not each["of_network"]:
                            each["prefixes"] = [
                                entry for entry in each["prefixes"]
                                if entry["prefix"] not in gone
                                or ipaddress.ip_network(entry["prefix"]).prefixlen == host]
                lsa["links"] = [each for each in lsa["links"] if each is not link]
    return found


def without_router(database, router):
    for area in database["areas"]:
        for kind in ("routers", "summaries", "boundaries", "nssa", "links"):
            area[kind] = [lsa for lsa in area[kind] if lsa["router"] != router]
        area["prefix_lsas"] = [lsa for lsa in area["prefix_lsas"]
                               if lsa["router"] != router or lsa["of_network"]]
        for lsa in area["networks"]:
            lsa["attached"] = [each for each in lsa["attached"] if each != router]
    database["externals"] = [lsa for lsa in database["externals"] if lsa["router"] != router]


def set_cost(database, a, b, metric):
    found = False
    for area in database["areas"]:
        def networks(router):
            return {(link["neighbor"], link["neighbor_interface"]) for lsa in area["routers"]
                    if lsa["router"] == router for link in lsa["links"] if link["type"] == 2}
        both = networks(a) & networks(b)
        for lsa in area["routers"]:
            if lsa["router"] != a:
                continue
            changed = []
            for link in lsa["links"]:
                if (link["type"] == 1 and link["neighbor"] == b) or (
                        link["type"] == 2
                        and (link["neighbor"], link["neighbor_interface"]) in both):
                    link["metric"] = metric
                    changed.append(link["interface"])
            for link in lsa["links"]:
                if link["type"] == 3 and any(inside(link["stub"], each) for each in changed):
                    link["metric"] = metric
            found = found or bool(changed)
    return found


def may_go_into(entry, area):
    if entry["kind"] == "intra":
        return entry["area"] != area
    return entry["kind"] == "inter" and area != 0 and entry["area"] != area


def new_summaries(area, source, old, now):
    """Of routers that said all that they had into the area, what else they have now."""
    for router in sorted({lsa["router"] for lsa in source["summaries"]}):
        said = {lsa["prefix"]: lsa["metric"] for lsa in source["summaries"]
                if lsa["router"] == router}
        had = {prefix: entry["cost"] for prefix, entry in old[router].table.items()
               if may_go_into(entry, area["id"])}
        if all(said.get(prefix) == cost for prefix, cost in had.items()):
            for prefix, entry in now[router].table.items():
                if may_go_into(entry, area["id"]) and prefix not in said:
                    yield {"router": router, "prefix": prefix, "metric": entry["cost"],
                           "options": 0}


def summary_cost(calculation, lsa, area):
    """What a router may say of a prefix or a boundary router into an area; None for nothing."""
    if "prefix" in lsa:
        entry = calculation.table.get(lsa["prefix"])
        if entry is None or entry["kind"] not in ("intra", "inter"):
            return None
        return entry["cost"] if may_go_into(entry, area) else None
    found = []
    for tree in calculation.trees:
        path = calculation.paths[tree.view.id].get(lsa["boundary"])
        if path is not None and tree.view.flag(calculation.root, "takes_externals"):
            second = not path[2] or tree.view.id == 0
            found.append((second and not calculation.rfc1583, path[0], -tree.view.id, path[2]))
    if not found:
        return None
    _, cost, area_of_path, is_intra = min(found)
    return None if -area_of_path == area or (not is_intra and area == 0) else cost


def calculations(database):
    routers = {lsa["router"] for area in database["areas"]
               for kind in ("summaries", "boundaries") for lsa in area[kind]}
    found = {}
    for router in routers:
        found[router] = reference.Calculation(database, router)
        found[router].run()
    return found


def resummarise(before, after):
    old = calculations(before)
    for router in calculations(after).keys() - old.keys():
        raise AssertionError(router)
    given = copy.deepcopy(after)
    for _ in range(4):
        now = calculations(after)
        following = copy.deepcopy(after)
        for area, source in zip(following["areas"], given["areas"]):
            for kind in ("summaries", "boundaries"):
                area[kind] = []
                for lsa in source[kind]:
                    if summary_cost(old[lsa["router"]], lsa, area["id"]) == lsa["metric"]:
                        if lsa["router"] not in now:
                            now[lsa["router"]] = reference.Calculation(after, lsa["router"])
                            now[lsa["router"]].run()
                        cost = summary_cost(now[lsa["router"]], lsa, area["id"])
                        if cost is None:
                            continue
                        lsa = dict(lsa, metric=cost)
                    area[kind].append(lsa)
            for router in {lsa["router"] for lsa in source["summaries"]} - now.keys():
                now[router] = reference.Calculation(after, router)
                now[router].run()
            area["summaries"] += new_summaries(area, source, old, now)
        same = following == after
        after.clear()
        after.update(following)
        if same:
            return


def changed(database, change):
    """The changed database, or None when the change is none for it."""
    after = copy.deepcopy(database)
    if change["kind"] == "without_link":
        done = without_link(after, change["from"], change["to"])
    elif change["kind"] == "without_router":
        done = True
        without_router(after, change["from"])
    else:
        done = set_cost(after, change["from"], change["to"], change["metric"])
    if not done:
        return None
    if len(after["areas"]) > 1:
        resummarise(database, after)
    return after
