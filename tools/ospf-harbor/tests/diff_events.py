#!/usr/bin/env python3
"""diff_events.py OSPF-HARBOR RECORDINGS: what `diff` says of two times of a capture is what `events`
tells between them, LSA for LSA: what came, what went, what changed. An LSA that changed and changed
back is in the events alone; its octets at the two times are held against each other."""

import datetime
import json
import subprocess
import sys

NETWORKS = ["forged", "domain", "nssa", "dr-change", "campus", "nbma", "mismatch", "instances", "ageing"]
WINDOWS = 4


def ask(tool, *words):
    answer = subprocess.run([tool, *words], capture_output=True, text=True, check=False)
    return [json.loads(line) for line in answer.stdout.splitlines()]


def name_of(line, lsa):
    area = None if lsa["scope"] == "as" else line["area"]
    return (line["version"], line["instance"], area, lsa["scope"], lsa["type"], lsa["lsa_id"],
            lsa["adv_router"])


def seconds(text):
    return datetime.datetime.fromisoformat(text.replace("Z", "+00:00")).timestamp()


def told_between(events, begin, end):
    there = {}  # before, after, whether anything but a refresh happened
    for event in events:
        if event["lsa"] is None or not begin < seconds(event["time"]) <= end:
            continue
        if not event["kind"].startswith("lsa_"):
            continue
        kind = event["kind"][4:]
        state = there.setdefault(name_of(event, event["lsa"]), [kind != "new", None, False])
        state[1] = kind not in ("flushed", "aged_out")
        state[2] |= kind != "refreshed"
    words = {(False, True): "came", (True, False): "went", (True, True): "changed"}
    return {name: words[before, after] for name, (before, after, changed) in there.items()
            if (before or after) and changed}


def octets_at(tool, capture, time, name):
    words = ["--v2" if name[0] == 2 else "--v3", "--adv-router", name[6], "--type", str(name[4])]
    for line in ask(tool, "lsdb", "--json", *words, "--at", time, "--from", capture):
        if (line["lsa_id"], line["area"] if name[3] != "as" else None) == (name[5], name[2]):
            return line["raw_data"][40:]
    return None


def main():
    tool, recordings = sys.argv[1:]
    wrong = compared = 0
    for network in NETWORKS:
        capture = f"{recordings}/{network}/all.pcap"
        events = ask(tool, "events", "--json", "--from", capture)
        first, last = seconds(events[0]["time"]), seconds(events[-1]["time"])
        for window in range(WINDOWS):
            # Off the times of packets, which have six digits.
            begin, end = (first + (last - first) * at / WINDOWS + 0.0000005
                          for at in (window, window + 1 - 1e-6))
            begin_text, end_text = f"{begin:.6f}", f"{end:.6f}"
            begin, end = float(begin_text), float(end_text)
            told = told_between(events, begin, end)
            said = {name_of(line, line): line["change"]
                    for line in ask(tool, "diff", capture, "--at", begin_text, "--at", end_text,
                                    "--json") if line["diff"] == "lsa"}
            compared += len(said)
            for name in sorted(set(told) | set(said), key=str):
                if told.get(name) == said.get(name):
                    continue
                back = (told.get(name) == "changed" and name not in said and
                        octets_at(tool, capture, begin_text, name) ==
                        octets_at(tool, capture, end_text, name) is not None)
                if not back:
                    wrong += 1
                    print(f"{network} from {begin_text} to {end_text}: {name}: "
                          f"diff {said.get(name)}, events {told.get(name)}")
    print(f"{compared} LSAs compared, {wrong} wrong")
    # A comparison of nothing would prove nothing.
    return 1 if wrong or compared < 300 else 0


if __name__ == "__main__":
    sys.exit(main())
