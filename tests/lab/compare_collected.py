#!/usr/bin/env python3
"""compare_collected.py TOOL STORE WATCHED STAGE STATE ROUTER VTYSH...

Waits until the store holds what the router ROUTER answers to VTYSH: the LSAs of both its databases
and the states of its neighbours; and until WATCHED, the lines of `watch --json`, come to the same.
STAGE is what the answers must show first: `up`, two neighbours in state Full; `changed`, a newer LSA
than STATE told of; `gone`, no neighbours and fewer LSAs of others. STATE is a file that keeps the
LSAs from stage to stage."""

import json
import pathlib
import subprocess
import sys
import time

tool, store, watched, stage, state, router, *vtysh = sys.argv[1:]
MAX_AGE = 3600
V2_TYPES = {"routerLinkStates": 1, "networkLinkStates": 2, "summaryLinkStates": 3,
            "asbrSummaryLinkStates": 4}
V3_TYPES = {"Rtr": 0x2001, "Net": 0x2002, "INP": 0x2009, "Lnk": 0x0008}


def answer(command):
    return json.loads(subprocess.run([*vtysh, "-c", command], capture_output=True, check=True).stdout)


def rows(command):
    """What the tool prints, line by line; nothing of a store that holds nothing yet."""
    done = subprocess.run([tool, command, "--json", "--store", store], capture_output=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


def router_lsas():
    """(version, type, ID, advertising router) to (sequence number, checksum), as the router has them;
    OSPFv3's list tells no checksum."""
    found = {}
    for area in answer("show ip ospf database json").get("areas", {}).values():
        for key, lsas in area.items():
            if not isinstance(lsas, list):
                continue
            for lsa in lsas:
                if lsa["lsaAge"] < MAX_AGE:
                    found[2, V2_TYPES[key], lsa["lsId"], lsa["advertisedRouter"]] = (
                        int(lsa["sequenceNumber"], 16), int(lsa["checksum"], 16))
    for place in (place for places in answer("show ipv6 ospf6 database json").values()
                  for place in places):
        for lsa in place["lsa"]:
            if lsa["age"] < MAX_AGE:
                found[3, V3_TYPES[lsa["type"]], lsa["lsId"], lsa["advRouter"]] = (lsa["seqNum"], None)
    return found


def router_neighbors():
    found = {}
    for name, entries in answer("show ip ospf neighbor json").get("neighbors", {}).items():
        found[2, name] = entries[0]["nbrState"].split("/")[0]
    for entry in answer("show ipv6 ospf6 neighbor json").get("neighbors", []):
        found[3, entry["neighborId"]] = entry["state"]
    return found


def key_of(lsa):
    return lsa["version"], lsa["type"], lsa["lsa_id"], lsa["adv_router"]


def fact_of(lsa):
    checksum = int(lsa["checksum"], 16) if lsa["version"] == 2 else None
    return int(lsa["seq_num"], 16), checksum


def collected_neighbors():
    """Those of the router that are not down, as the store has them."""
    return {(row["version"], row["neighbor_id"]): row["state"] for row in rows("neighbors")
            if row["router"] == router and row["state"] != "Down"}


def watched_rows():
    """LSAs by path with their sequence numbers, and neighbours of the router with their states."""
    lsas, neighbors = {}, {}
    for line in pathlib.Path(watched).read_text().splitlines(keepends=True):
        if not line.endswith("\n"):
            break
        change = json.loads(line)
        path, is_there = change["path"], change["change"] not in ("gone", "aged out")
        if "seq_num" in change:
            lsas[path] = int(change["seq_num"], 16) if is_there else None
        elif change["kind"] == "neighbor" and f"/interface/{router}@" in path:
            version = 2 if path.startswith("instance/ipv4") else 3
            neighbors[version, path.rsplit("/", 1)[1]] = change["state"] if is_there else "Down"
    return ({path: number for path, number in lsas.items() if number is not None},
            {key: text for key, text in neighbors.items() if text != "Down"})


def looks_right(lsas, neighbors, before):
    if stage == "up":
        return sorted(neighbors.values()) == ["Full", "Full"]
    if stage == "changed":
        return all(any(key[0] == version and before[key][0] < lsas[key][0]
                       for key in lsas.keys() & before.keys()) for version in (2, 3))
    return not neighbors and len(lsas) < len(before)


def differences(before):
    """What is still missing, as text; nothing when all is as it must be."""
    lsas, neighbors = router_lsas(), router_neighbors()
    if not looks_right(lsas, neighbors, before):
        return f"the router answers {lsas} and {neighbors}", lsas
    listed = rows("lsdb")
    collected = {key_of(lsa): fact_of(lsa) for lsa in listed}
    told, told_neighbors = watched_rows()
    if stage == "gone":
        # What the router says of itself afterwards it says to nobody.
        own = [key for key in lsas if key[3] == router]
        lsas = {key: fact for key, fact in lsas.items() if key not in own}
        collected = {key: fact for key, fact in collected.items() if key[3] != router}
    for what, found, expected in (
            ("LSAs", collected, lsas), ("neighbours", collected_neighbors(), neighbors),
            ("watched LSAs", told, {lsa["path"]: fact_of(lsa)[0] for lsa in listed}),
            ("watched neighbours", told_neighbors, neighbors)):
        if found != expected:
            wrong = [f"{key}: {found.get(key)} instead of {expected.get(key)}"
                     for key in sorted(found.keys() | expected.keys(), key=str)
                     if found.get(key) != expected.get(key)]
            return f"{what} differ: " + "; ".join(wrong), lsas
    return "", lsas


kept = pathlib.Path(state)
earlier = dict((tuple(key), tuple(fact)) for key, fact in json.loads(kept.read_text())) \
    if kept.exists() else {}
end = time.monotonic() + 20
while True:
    missing, now = differences(earlier)
    if not missing:
        break
    if time.monotonic() > end:
        sys.exit(f"{stage}: {missing}")
    time.sleep(0.1)
kept.write_text(json.dumps([[key, fact] for key, fact in now.items()]))
print(f"{stage}: {len(now)} LSAs, {len(router_neighbors())} neighbours, as the router has them")
