#!/usr/bin/env python3
"""compare_lab.py PROGRAM DATA [NETWORK...]

For each recorded network in DATA: what `PROGRAM routes` makes of the packets, against the routes
that each router had. Every difference must stand in lab_differences.txt beside this script, with
its reason, and every line there must be met."""

import collections
import json
import pathlib
import subprocess
import sys

import lab_answers

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[3] / "tests/support"))
from expected_differences import status_of  # noqa: E402

ROUTE_KEYS = ["router", "router_name", "version", "instance", "prefix", "kind", "cost",
              "type2_cost", "tag", "area", "next_hops"]


def calculated(program, network):
    run = subprocess.run([program, "routes", "--router", "all", "--json", "--from",
                          network / "all.pcap"], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                         text=True, check=False)
    tables = collections.defaultdict(dict)
    for line in run.stdout.splitlines():
        route = json.loads(line)
        if list(route) != ROUTE_KEYS:
            raise SystemExit(f"the keys of a route are {list(route)}")
        tables[(route["router"], route["version"], route["instance"])][route["prefix"]] = route
    return tables


def same_hops(router, ours, theirs):
    """Whether each next hop has its like on the other side."""
    left = set(theirs)
    for hop in ours:
        names = router.interface_names(hop["interface"])
        like = [each for each in left if each[0] == hop["address"]
                and (names is None or not router.has_names or each[1] in names)]
        if not like:
            return False
        left.discard(like[0])
    return not left


def short(kind):
    return kind.replace("external", "type").replace("nssa", "type")


def difference(router, ours, theirs):
    """A word for how two routes differ, nothing when they do not."""
    if ours is None:
        return "missing"
    if theirs is None:
        return "extra"
    if "kind" in theirs and short(ours["kind"]) != theirs["kind"]:
        return f"kind {theirs['kind']} there, {ours['kind']} here"
    for key in ("cost", "type2_cost", "tag", "area"):
        if key in theirs and ours[key] is not None and ours[key] != theirs[key]:
            return f"{key} {theirs[key]} there, {ours[key]} here"
    metric = ours["cost"] if ours["type2_cost"] is None else ours["type2_cost"]
    if theirs.get("metric", metric) != metric:
        return f"metric {theirs['metric']} there, {metric} here"
    if "next_hops" in theirs and not same_hops(router, ours["next_hops"], theirs["next_hops"]):
        there = sorted(f"{address}@{name}" for address, name in theirs["next_hops"])
        here = sorted(f"{hop['address']}@{hop['interface']}" for hop in ours["next_hops"])
        return f"next hops {' '.join(there)} there, {' '.join(here)} here"
    return None


def differences_of(program, network):
    """How many routes were compared, and the text of each difference."""
    tables = calculated(program, network)
    found, compared = {}, 0
    for router in lab_answers.routers_of(network):
        for (version, instance), theirs in router.answers():
            ours = tables.get((router.id, version, instance), {})
            for prefix in sorted(set(ours) | set(theirs)):
                compared += 1
                how = difference(router, ours.get(prefix), theirs.get(prefix))
                if how:
                    found[(router.folder.name, version, instance, prefix)] = how
    return compared, [f"{' '.join(map(str, key))} {how}" for key, how in sorted(found.items())]


if __name__ == "__main__":
    known = pathlib.Path(__file__).with_name("lab_differences.txt")
    sys.exit(status_of(known, "routes", differences_of))
