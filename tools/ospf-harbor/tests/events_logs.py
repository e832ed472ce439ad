#!/usr/bin/env python3
"""events_logs.py OSPF-HARBOR RECORDINGS: the neighbours that `events` tells to be down are those that
the routers logged to have fallen from Full, and for reasons that agree. A router knows at once that
an interface of its own is down (KillNbr), packets show it when hellos are missing; who dies logs
nothing. BIRD begins its timer anew at every packet, not at hellos alone. Networks whose routers logged nothing of adjacencies are left out."""

import datetime
import gzip
import json
import pathlib
import re
import subprocess
import sys

FALLS = {
    "ospfd.log": (2, r"AdjChg: Nbr (\S+), .*: Full -> (\S+) \((\S+)\)"),
    "ospf6d.log": (3, r"AdjChg: Nbr ([\d.]+)\(\S+\) on \S+: Full -> (\S+) \((\S+)\)"),
    "bird.log": (None, r"ospf_v(\d): Neighbor (\S+) on \S+ changed state from Full to (\S+)"),
}
BIRD_CAUSES = {"Down": "any packet's timer", "Init": "1-WayReceived", "ExStart": "SeqNumberMismatch"}

# What a router may log for each reason that packets give.
CAUSES = {
    "dead_timer": {"InactivityTimer", "any packet's timer", "KillNbr"},
    "mismatch": {"InactivityTimer", "1-WayReceived", "KillNbr"},
    "one_way": {"1-WayReceived", "InactivityTimer", "KillNbr"},
    "exchange_again": {"SeqNumberMismatch", "BadLSReq", "1-WayReceived"},
}
# One end falls up to a dead interval behind the other, that of a virtual link being the longest.
APART = {"KillNbr": 45}
APART_OTHERS = 13
# A dead timer that a router logs ended when the packets say, give or take what it had to do.
TIMER = 0.75


def seconds(text):
    return datetime.datetime.fromisoformat(text).replace(tzinfo=datetime.timezone.utc).timestamp()


def router_id(folder):
    for name in ("ip-ospf.json.gz", "ipv6-ospf6.json.gz"):
        if (folder / name).exists():
            with gzip.open(folder / name, "rt") as file:
                text = file.read().strip()
            found = json.loads(text).get("routerId") if text else None
            if found:
                return found
    for name in ("bird.conf", "frr.conf"):
        if (folder / name).exists():
            found = re.search(r"router[- ]id (\d[\d.]*)", (folder / name).read_text())
            if found:
                return found[1]
    return None


def logged(folder):
    """(time, version, pair of routers, cause) of each fall from Full."""
    own = router_id(folder)
    for name, (version, pattern) in FALLS.items():
        if not (folder / name).exists():
            continue
        for line in (folder / name).read_text().splitlines():
            found = re.search(pattern, line)
            if not found:
                continue
            time = seconds(line[:26].replace("/", "-").split(" <")[0].split(" OSPF")[0].strip())
            if version is None:
                yield time, int(found[1]), frozenset((own, found[2])), BIRD_CAUSES[found[3]]
            else:
                yield time, version, frozenset((own, found[1])), found[3]


def told(tool, capture):
    run = subprocess.run([tool, "events", "--json", "--kind", "neighbor_down", "--from", capture],
                         capture_output=True, text=True, check=False)
    for line in run.stdout.splitlines():
        event = json.loads(line)
        yield (seconds(event["time"].rstrip("Z")), event["version"], frozenset(event["routers"]),
               event["why"])


def of_links_that_failed(falls):
    """ospf6d logs nothing of an interface that is down, ospfd on the same link does."""
    return [(time, 3, pair, cause) for time, version, pair, cause in falls
            if version == 2 and cause == "KillNbr"]


def disagreements(events, falls):
    helping = of_links_that_failed(falls)
    for time, version, pair, why in events:
        near = [(cause, at) for at, of, who, cause in falls + helping if (of, who) == (version, pair)
                and abs(at - time) <= APART.get(cause, APART_OTHERS)]
        causes = {cause for cause, _ in near}
        text = f"OSPFv{version} {' '.join(sorted(pair))} down at {time:.3f} by {why}"
        if not causes & CAUSES[why]:
            yield f"{text}, logged {sorted(causes) or 'nothing'}"
        timers = [abs(at - time) for cause, at in near if cause == "InactivityTimer"]
        if why == "dead_timer" and timers and min(timers) > TIMER:
            yield f"{text}, {min(timers):.3f} s from the router's own timer"
    for time, version, pair, cause in falls:
        if not any((of, who) == (version, pair) and abs(at - time) <= APART.get(cause, APART_OTHERS)
                   and cause in CAUSES[why] for at, of, who, why in events):
            yield f"OSPFv{version} {' '.join(sorted(pair))} fell at {time:.3f} by {cause}, not told"


def main():
    tool, recordings = sys.argv[1], pathlib.Path(sys.argv[2])
    wrong, compared, reasons = 0, 0, set()
    for network in sorted(each for each in recordings.iterdir() if (each / "all.pcap").exists()):
        falls = [fall for folder in sorted((network / "routers").iterdir())
                 for fall in logged(folder)]
        if not falls:
            continue
        events = list(told(tool, network / "all.pcap"))
        compared += len(events) + len(falls)
        reasons |= {why for _, _, _, why in events}
        for text in disagreements(events, falls):
            print(network.name, text)
            wrong += 1
    print(f"{compared} ends of adjacencies compared, {wrong} wrong")
    missing = {"dead_timer", "mismatch", "one_way"} - reasons
    for why in sorted(missing):
        print(f"no network shows {why}")
    return 1 if wrong or missing or compared < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
