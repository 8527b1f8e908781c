#!/usr/bin/env python3
"""Judges what "vantor corridor match --json" says against the truth of make_corridor.py.

    scripts/judge_corridor.py TRUTH MATCH_JSON [--counter] [--row NAME]
    scripts/judge_corridor.py --head

--counter   the matched runs are those of the counter: they are known by their names, and their nodes by the sample,
            which stands for the middle of its second
--row NAME  one row of a table in Markdown in place of the report; --head: the head of that table

Exit status 1 unless every pass was found and no false one, every node passed is within 2 s, and 95 % of the control
delays are within 3 s. Nodes and bands that fall into a gap of the log are not judged.
"""

import argparse
import datetime
import json
import sys
from pathlib import Path, PurePath

NODE_SECONDS, DELAY_SECONDS, DELAY_SHARE = 2.0, 3.0, 0.95
SAME_PASS = 60.0   # seconds within which a node was passed for two passes to be the same
SAME_BAND = 5.0    # feet
HEAD = ("| | passes | missed | false | nodes | mean error s | worst s | within 2 s | delays | mean error s "
        "| 5 % to 95 % s | worst s | within 3 s |\n|---|" + "--:|" * 12)


def read_match(path):
    """The one place that knows the program's JSON. Passes with `run`, `file`, `direction` and nodes by their index."""
    passes = []
    for told in json.loads(Path(path).read_text(encoding="utf-8"))["passes"]:
        nodes = {}
        # Days are read with --time-zone UTC. A second of a track ends at its point; the node lies before that.
        start = datetime.datetime.fromisoformat(told["start"] + "+00:00").timestamp()
        for node in told["nodes"]:
            if node.get("source") in (None, "none") or node.get("sample") is None:
                continue
            band = node.get("band") or {}
            nodes[node["index"]] = {
                "time": start + node["sample"] - 1.5, "sample": node["sample"] - 0.5, "source": node["source"],
                "delay": node.get("control_delay") if node.get("covered", True) else None,
                "band": band["end"] - band["start"] if band.get("end") and band.get("start") else None}
        source = told.get("source") or {}
        passes.append({"run": PurePath(told["run"]).stem, "file": PurePath(source.get("file") or "").name,
                       "direction": told["direction"], "nodes": nodes})
    return passes


def true_passes(truth, counter):
    """The same shape; for a counter's run times are seconds from its start, as its samples are."""
    passes = []
    for told in truth["counter_runs" if counter else "passes"]:
        start = told["start_utc"] if counter else 0
        nodes = {node["index"]: {**node, "time": node["passed_utc"] - start} for node in told["nodes"]}
        passes.append({**told, "name": told["run"] if counter else clock(told["start_utc"]), "nodes": nodes})
    return passes


def clock(utc):
    return f"{int(utc) // 3600 % 24:02}:{int(utc) // 60 % 60:02}:{int(utc) % 60:02} UTC"


def shared_nodes(true, found):
    """How many nodes both passed at about the same time."""
    return sum(1 for index, node in true["nodes"].items() if index in found["nodes"]
               and found["nodes"][index]["time"] is not None
               and abs(found["nodes"][index]["time"] - node["time"]) < SAME_PASS)


def pair(trues, founds, counter):
    """Each true pass with the found one that shares most nodes, or None; and the found ones that are left."""
    def likeness(true, found):
        if counter:
            return len(found["nodes"]) if true["run"] == found["run"] else 0
        if true["direction"] != found["direction"] or found["file"] not in ("", true["file"]):
            return 0
        return shared_nodes(true, found)
    ranked = sorted(((likeness(true, found), -i, -k) for i, true in enumerate(trues) for k, found in enumerate(founds)),
                    reverse=True)
    partner, taken = {}, set()
    for score, i, k in ranked:
        if score and -i not in partner and -k not in taken:
            partner[-i] = -k
            taken.add(-k)
    pairs = [(true, founds[partner[i]] if i in partner else None) for i, true in enumerate(trues)]
    return pairs, [found for k, found in enumerate(founds) if k not in taken]


class Errors:
    """Of one figure: each with the place it is of; None where the program has no figure."""

    def __init__(self, allowed):
        self.allowed, self.each = allowed, []

    def add(self, place, error):
        self.each.append((error, place))

    @property
    def known(self):
        return sorted(error for error, _ in self.each if error is not None)

    def share(self):
        return sum(abs(error) <= self.allowed for error in self.known) / len(self.each) if self.each else 1.0

    def mean(self):
        return sum(self.known) / len(self.known) if self.known else float("nan")

    def percentile(self, p):
        known = self.known
        if not known:
            return float("nan")
        at = p * (len(known) - 1)
        low = known[int(at)]
        return low + (known[min(int(at) + 1, len(known) - 1)] - low) * (at - int(at))

    def worst(self):
        return max(self.known, key=abs, default=float("nan"))

    def named(self, count):
        """The worst ones, those without a figure first."""
        outside = [one for one in self.each if one[0] is None or abs(one[0]) > self.allowed]
        outside.sort(key=lambda one: (one[0] is not None, -abs(one[0] or 0)))
        return [f"  {place}: {'no figure' if error is None else f'{error:+.1f} s'}" for error, place in outside[:count]]


class Verdict:
    def __init__(self, truth, founds, counter):
        self.trues = true_passes(truth, counter)
        self.pairs, self.false = pair(self.trues, founds, counter)
        self.missed = [true for true, found in self.pairs if not found]
        self.nodes, self.delays = Errors(NODE_SECONDS), Errors(DELAY_SECONDS)
        self.not_passed, self.other_bands = [], 0
        length = truth["corridor"]["upstream_ft"] + truth["corridor"]["downstream_ft"]
        for true, found in self.pairs:
            if found:
                self.compare(true, found, "sample" if counter else "time", length)

    def compare(self, true, found, clock_of, length):
        name = f'{true["file"]} {true["name"]} {"SB" if true["direction"] else "NB"} (run {found["run"]})'
        for index, node in true["nodes"].items():
            said = found["nodes"].get(index, {})
            at = said.get(clock_of)
            if node.get("position_seen", True):
                self.nodes.add(f'{name} at {node["name"]}', None if at is None else at - node["time"])
            if node.get("band_seen", True):
                delay = said.get("delay")
                self.delays.add(f'{name} at {node["name"]}, {node["control_delay"]:.0f} s',
                                None if delay is None else delay - node["control_delay"])
            if said.get("band") and abs(said["band"] - length) > SAME_BAND:
                self.other_bands += 1
        for index in found["nodes"].keys() - true["nodes"].keys():
            if found["nodes"][index]["source"] in ("position", "mark"):
                self.not_passed.append(f"{name}: node {index} was not passed")

    def good(self):
        return (not self.missed and not self.false and not self.not_passed and not self.other_bands
                and bool(self.trues) and self.nodes.share() == 1 and self.delays.share() >= DELAY_SHARE)

    def row(self, name):
        found = len(self.trues) - len(self.missed)
        cells = [name, f"{found} of {len(self.trues)}", len(self.missed), len(self.false)]
        cells += [len(self.nodes.each), f"{self.nodes.mean():+.2f}", f"{self.nodes.worst():+.1f}",
                  f"{100 * self.nodes.share():.1f} %"]
        cells += [len(self.delays.each), f"{self.delays.mean():+.2f}",
                  f"{self.delays.percentile(0.05):+.1f} to {self.delays.percentile(0.95):+.1f}",
                  f"{self.delays.worst():+.1f}", f"{100 * self.delays.share():.1f} %"]
        return "| " + " | ".join(map(str, cells)) + " |"

    def report(self):
        lines = [HEAD, self.row("all")]
        if self.missed:
            lines += ["missed:", *(f'  {true["file"]} {true["name"]} {"SB" if true["direction"] else "NB"}, '
                                   f'{len(true["nodes"])} nodes' for true in self.missed)]
        if self.false:
            lines += ["no pass in truth:", *(f'  {found["file"]} run {found["run"]}, {len(found["nodes"])} nodes'
                                             for found in self.false)]
        lines += [f"  {text}" for text in self.not_passed]
        if self.other_bands:
            lines.append(f"{self.other_bands} bands are of another length than those of truth")
        for what, errors in (("node times", self.nodes), ("control delays", self.delays)):
            if worst := errors.named(10):
                lines += [f"{what} outside {errors.allowed:.0f} s, the worst:", *worst]
        return "\n".join([*lines, "good" if self.good() else "NOT GOOD"])


def main():
    parser = argparse.ArgumentParser(description="Judges matched passes against the truth.")
    parser.add_argument("truth", type=Path, nargs="?")
    parser.add_argument("match", type=Path, nargs="?")
    parser.add_argument("--counter", action="store_true", help="the runs are those of the counter")
    parser.add_argument("--row", metavar="NAME", help="print one row of a table")
    parser.add_argument("--head", action="store_true", help="print the head of that table alone")
    options = parser.parse_args()
    if options.head:
        print(HEAD)
        return 0
    if options.match is None:
        parser.error("the truth and what the program said are needed")
    verdict = Verdict(json.loads(options.truth.read_text()), read_match(options.match), options.counter)
    print(verdict.report() if options.row is None else verdict.row(options.row))
    return 0 if verdict.good() else 1


if __name__ == "__main__":
    sys.exit(main())
