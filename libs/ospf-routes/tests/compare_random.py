#!/usr/bin/env python3
"""compare_random.py PROGRAM [--graphs N] [--first SEED] [--roots N] [--most-routers N] [--changes]

Calculates the routes of random networks twice: by PROGRAM, which reads databases as lines of JSON
and answers with lines of JSON, and by the plain implementation beside this script. With --changes
the networks are changed first, by each in its own way. Prints the first differences with the seed
that shows them; status 1 when there is one."""

import argparse
import json
import random
import subprocess
import sys

import changes_reference
import reference
from random_network import random_database


def as_routes(answer):
    routes = {}
    for route in answer["routes"]:
        hops = frozenset((hop[0], hop[1]) for hop in route[6])
        if len(hops) != len(route[6]):
            raise SystemExit(f"a next hop twice: {route}")
        routes[route[0]] = (*route[1:6], hops)
    return routes


def random_change(database, rng):
    """A change that is one for the database, with the database that it makes."""
    routers = [lsa for area in database["areas"] for lsa in area["routers"] if lsa["in_family"]]
    for _ in range(20):
        lsa = rng.choice(routers)
        others = [link["neighbor"] for link in lsa["links"] if link["type"] == 1]
        change = {"kind": rng.choice(["without_link", "without_router", "cost"]),
                  "from": lsa["router"], "to": rng.choice(others) if others else 0,
                  "metric": rng.randint(1, 30)}
        if not others and change["kind"] != "without_router":
            continue
        if change["to"] and all(each["router"] != change["to"] for each in routers):
            continue
        after = changes_reference.changed(database, change)
        if after is not None:
            return change, after
    return None, database


def show(route):
    if route is None:
        return "none"
    return str(route[:5]) + " " + str(sorted((str(a), str(b)) for a, b in route[5]))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--graphs", type=int, default=300)
    parser.add_argument("--first", type=int, default=1)
    parser.add_argument("--roots", type=int, default=4, help="routers to ask for on each graph")
    parser.add_argument("--most-routers", type=int, default=60)
    parser.add_argument("--changes", action="store_true", help="ask what if, once for each graph")
    options = parser.parse_args()
    tool = subprocess.Popen([options.program], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                            text=True)
    counts = {"graphs": 0, "changes": 0, "tables": 0, "routes": 0, "hops": 0}
    kinds = dict.fromkeys(reference.KINDS, 0)
    differences = 0
    for seed in range(options.first, options.first + options.graphs):
        database = random_database(seed, options.most_routers)
        routers = sorted({lsa["router"] for area in database["areas"] for lsa in area["routers"]
                          if lsa["in_family"]})
        rng = random.Random(seed)
        roots = rng.sample(routers, min(len(routers), options.roots))
        counts["graphs"] += 1
        asked = {"database": database, "roots": roots}
        if options.changes and routers:
            change, database = random_change(database, rng)
            if change:
                counts["changes"] += 1
                asked["change"] = change
        tool.stdin.write(json.dumps(asked) + "\n")
        tool.stdin.flush()
        for root in roots:
            line = tool.stdout.readline()
            if not line:
                raise SystemExit(f"{options.program} ended at seed {seed}: status {tool.wait()}")
            ours = as_routes(json.loads(line))
            theirs = reference.routes(database, root)
            counts["tables"] += 1
            counts["routes"] += len(theirs)
            for route in theirs.values():
                kinds[route[0]] += 1
                counts["hops"] += len(route[5])
            for prefix in sorted(set(ours) | set(theirs)):
                if ours.get(prefix) != theirs.get(prefix):
                    differences += 1
                    if differences <= 20:
                        print(f"seed {seed} router {reference.quad(root)} {prefix}:\n"
                              f"  library   {show(ours.get(prefix))}\n"
                              f"  reference {show(theirs.get(prefix))}")
    tool.stdin.close()
    status = tool.wait()
    print(", ".join(f"{count} {what}" for what, count in (counts | kinds).items()) +
          f"; {differences} differences")
    if counts["graphs"] >= 100 and not all(kinds.values()):
        print("some kind of route was never met")
        return 1
    return 1 if differences or status else 0


if __name__ == "__main__":
    sys.exit(main())
