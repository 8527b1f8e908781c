#!/usr/bin/env python3
"""Makes a corridor of six signals that was driven before and after a retiming, and the truth about it.

    scripts/make_corridor.py FOLDER [SEED] [--case NAME] [--rounds N]

before.gpx, after.gpx   the track of a receiver, one continuous track a day, out and back and out again
before.tdc, after.tdc   the counter's runs of the same drives, nodes marked by an observer
corridor.csv            name, latitude and longitude of the nodes
truth.json              what the model of motion (corridor_model.py) did

A case makes the days harder: see CASES. The output depends on the seed and the options alone.

In truth.json, times are seconds UTC since 1970, from the car's place ten times a second, without a receiver's error:

passes       each way along the street past one signal or more, ended by a turn, a loop or a side trip; `partial` where
             it is not past all six. From `start_utc` to `end_utc` it is inside the bands of its nodes; `travel_time` is
             from its first node to its last. Its sums are over its nodes.
nodes        `passed_utc`: the car is at the node, which is STOP_LINE behind the stop line. The band is from UPSTREAM
             before the node to DOWNSTREAM behind it along the driven line, entered and left at `enter_utc` and
             `leave_utc`. `control_delay` is leave - enter - (UPSTREAM + DOWNSTREAM) / IDEAL_SPEED.
             `stopped_seconds`: below 5 mph inside the band. A stop begins below 5 mph inside the band and ends at
             10 mph: `stop_began_utc` of the first, `departed_utc` of the last. `arrived_on` is the signal's colour when
             the first stop began, or without a stop when the car passed.
             `position_seen`, `band_seen`: no gap of more than 5 s at the node, in the band.
timing       green begins where (time - offset) is a multiple of the cycle; 4 s of amber follow, then red.
counter_runs `marks`: [sample from 1, node's index, or null for one too many]; a sample covers the second that ends
             `sample` seconds after `start_utc`.
no_pass      what a matcher could take for a pass, or a part of one: turns, loops, side trips, parallel streets.
"""

import argparse
import json
import random
from datetime import datetime, timedelta, timezone
from math import hypot
from pathlib import Path

from corridor_model import AMBER, LANE, MPH, STEP, Car, Crossings, Route, Street, Timing

NAMES = ["Oak St", "Elm Ave", "Maple St", "Cedar Rd", "Birch Ave", "Pine St"]
SITES = {True: "HARBORNB", False: "HARBORSB"}
ORIGIN = (42.33, -83.05)
SPEED_LIMIT, IDEAL_SPEED = 40, 38  # mph
UPSTREAM, DOWNSTREAM = 600.0, 450.0
RUN_IN = 1500.0     # from where the car turns round to the first node
LONG_BLOCK = 2      # between Maple St and Cedar Rd: here the cases leave the street
DAYS = {"before": ("2026-03-04T15:00:07", -5, 1), "after": ("2026-06-10T14:00:19", -4, 3)}  # UTC, zone, counter study
REST = 420          # seconds at the kerb in the middle of the day, most of them with the receiver off
COUNTER_BEFORE, COUNTER_AFTER = 1250.0, 800.0  # feet of a counter's run before the first node and behind the last
NODE_KEY = 128
RATES = {"5hz": 0.2, "0.2hz": 5.0}
CASES = {
    "loop": "round the block and through the same signal again",
    "side-trip": "away from the street for two minutes, then on",
    "u-turn": "turned round inside the corridor",
    "parallel": "back by a street 150 ft beside the corridor",
    "part": "only some of the signals, the rest by a far street",
    "middle": "the receiver is switched on and off inside the corridor",
    "missing": "no positions for two minutes",
    "marks-late": "every third mark 3 to 9 s late",
    "marks-twice": "every third mark pressed again 2 to 6 s later",
    "offset": "the receiver tells places 60 ft off, across the street",
    "5hz": "five points a second",
    "0.2hz": "a point in five seconds",
    "calibrations": "another calibration a run, tyres up to 2 % off",
}


def make_street(rng):
    """Six nodes; the street bends by some degrees at each and between any two."""
    blocks = [rng.uniform(*feet) for feet in ((1300, 1700), (1110, 1250), (2300, 2600), (1700, 2000), (1300, 1700))]
    nodes = [0.0]
    for block in blocks:
        nodes.append(nodes[-1] + round(block))
    bends = [(a + b) / 2 for a, b in zip(nodes, nodes[1:])]
    corners = [-RUN_IN - 600, *sorted(nodes + bends), nodes[-1] + RUN_IN + 600]
    headings = [18.0 + rng.uniform(-8, 8)]
    for _ in corners[1:-1]:
        headings.append(headings[-1] + rng.uniform(2, 6) * (1 if rng.random() < 0.5 else -1))
    return Street(ORIGIN, nodes, corners, headings)


def make_timings(nodes, rng):
    """Before: each signal by itself. After: one cycle, greens that follow a car northbound."""
    before = [Timing((80, 90, 100)[int(rng.random() * 3)], int(rng.random() * 80), round(rng.uniform(34, 42)))
              for _ in nodes]
    after = [Timing(90, round(node / (36 * MPH)) % 90, round(rng.uniform(44, 50))) for node in nodes]
    return {"before": before, "after": after}


class Day:
    """The route of a day: rounds out and back, with what the case asks for in the second and third."""

    def __init__(self, street, rounds, case, rng):
        self.rng, self.case, self.route, self.rest = rng, case, Route(street), None
        self.ends = (-RUN_IN, street.nodes[-1] + RUN_IN)
        self.from_street = {True: street.nodes[LONG_BLOCK], False: street.nodes[LONG_BLOCK + 1]}
        self.route.go(street.place(self.ends[0] - 100, LANE))
        self.route.pause(rng.uniform(40, 80))
        for number in range(rounds):
            special = case if number in (1, 2) else None
            self.way(True, special)
            self.turn_round(True)
            self.way(False, special)
            if number + 1 < rounds:
                self.turn_round(False)
            if number + 1 == rounds // 2:
                self.rest = self.route.length
                self.route.pause(REST)
        self.route.pause(rng.uniform(30, 60))
        self.route.along(self.ends[0], self.ends[0] - 80)

    def way(self, forward, special):
        begin, end = self.ends if forward else self.ends[::-1]
        sign = 1 if forward else -1
        leave, back = self.from_street[forward] + 900 * sign, self.from_street[forward] + 1300 * sign
        far = {"loop": 400, "side-trip": 500, "part": 900, "parallel": 150}.get(special)
        if special == "loop":
            again = self.from_street[forward] - 750 * sign
            self.route.along(begin, leave)
            self.route.beside(special, [(leave, far), (again, far), (again, LANE)], sign)
            self.route.along(again, end)
        elif special == "side-trip":
            self.route.along(begin, leave)
            self.route.beside(special, [(leave, far)], sign)
            self.route.pause(120)
            self.route.beside(special, [(back, far), (back, LANE)], sign)
            self.route.along(back, end)
        elif special == "part" and forward:
            self.route.along(begin, leave)
            self.route.beside(special, [(leave, far), (end, far), (end, LANE)], sign)
        elif special == "part":
            self.route.beside(special, [(begin, far), (back, far), (back, LANE)], sign)
            self.route.along(back, end)
        elif special == "parallel" and not forward:
            start = self.route.length
            self.route.along(begin, end, far, on_street=False)
            self.route.others.append((start, self.route.length, special))
            self.route.go(self.route.street.place(end, -LANE))
        elif special == "u-turn":
            self.route.along(begin, leave)
            self.u_turn(leave, sign)
            self.route.along(leave, begin)
            self.u_turn(begin, -sign)
            self.route.along(begin, end)
        else:
            self.route.along(begin, end)

    def u_turn(self, s, sign, what="u-turn"):
        self.route.beside(what, [(s + 12 * sign, LANE * 0.8), (s + 16 * sign, 0), (s + 12 * sign, -LANE * 0.8),
                                 (s, -LANE)], sign)

    def turn_round(self, forward):
        """Beyond the corridor: by a real U-turn or round a block, often with a rest at the kerb."""
        s, sign = self.ends[forward], 1 if forward else -1
        if self.rng.random() < 0.5:
            self.route.pause(self.rng.uniform(15, 90))
        if self.rng.random() < 0.5:
            self.u_turn(s, sign, "turn round")
        else:
            behind = s + 250 * sign
            self.route.beside("turn round", [(s, 300), (behind, 300), (behind, -LANE), (s, -LANE)], sign)


def no_points(day, crossings, whole, rng):
    """Times at which the receiver logged nothing: dropouts of seconds, a rest of minutes, and what the case asks."""
    gaps = []
    for drive in whole[::4]:
        begin, end = (crossings.time(feet) for _, feet in (drive.nodes[0], drive.nodes[-1]))
        at = round(rng.uniform(begin, end))
        gaps.append([at, at + round(rng.uniform(2, 4))])
    if day.rest:
        on = round(crossings.time(day.rest)) - 20
        gaps.append([on - REST + 60, on])
    if day.case == "missing":
        for drive in whole[1::3]:
            at = round(crossings.time(drive.nodes[2][1]) + rng.uniform(-40, 0))
            gaps.append([at, at + 120])
    begin, end = day.start, day.start + len(crossings.feet) // 10
    if day.case == "middle":
        turns = [drive.nodes[LONG_BLOCK][1] + 900 for drive in (whole[0], whole[-1])]
        gaps += [[begin, round(crossings.time(turns[0]))], [round(crossings.time(turns[1])), end + 2]]
    return sorted(gaps)


def sideways(street, feet):
    """East and north, across the street as a whole: along it nothing could tell that a receiver is off."""
    (a, b), (c, d) = (street.place(s, 0.0) for s in (street.nodes[0], street.nodes[-1]))
    return (d - b) / hypot(c - a, d - b) * feet, (a - c) / hypot(c - a, d - b) * feet


def write_track(path, day, car, gaps, rng):
    """What a receiver says: it drifts by about 5 ft (r.m.s.) and jumps by up to 2 ft each second."""
    every = RATES.get(day.case, 1.0)
    off = sideways(day.route.street, 60.0 if day.case == "offset" else 0.0)
    jump, keep, kick = 2.0 * min(every, 1.0), 1 - every / 30, 2.0 * every ** 0.5
    drift = [rng.uniform(-6, 6), rng.uniform(-6, 6)]
    lines = ['<?xml version="1.0" encoding="UTF-8"?>', '<gpx version="1.1" creator="make_corridor.py" '
             'xmlns="http://www.topografix.com/GPX/1/1">', f"<trk><name>{path.stem}</name><trkseg>"]
    for i in range(0, len(car.trace), round(every / STEP)):
        t = day.start + i * STEP
        drift = [d * keep + rng.uniform(-kick, kick) for d in drift]
        place = day.route.place(car.trace[i][0])
        east, north = (place[n] + off[n] + drift[n] + rng.uniform(-jump, jump) for n in (0, 1))
        if any(a <= t < b for a, b in gaps):
            continue
        latitude, longitude = day.route.street.degrees(east, north)
        at = datetime.fromtimestamp(round(t, 1), timezone.utc)
        clock = f"{at:%Y-%m-%dT%H:%M:%S}" + (f".{round(at.microsecond / 1e5)}" if every < 1 else "")
        lines.append(f'<trkpt lat="{latitude:.6f}" lon="{longitude:.6f}"><time>{clock}Z</time></trkpt>')
    path.write_bytes("\n".join(lines + ["</trkseg></trk>", "</gpx>", ""]).encode("ascii"))


def counter_run(drive, crossings, case, calibration, rng):
    """Pulses and keys a second, the start, and the marks as [sample from 1, node or null for one too many]."""
    start = round(crossings.time(drive.nodes[0][1] - COUNTER_BEFORE))
    end = crossings.time(drive.nodes[-1][1] + COUNTER_AFTER)
    tyres = 0.02 if case == "calibrations" else 0.003
    pulse = calibration / 1000 * rng.uniform(1 - tyres, 1 + tyres)
    first, counted, words = crossings.feet[crossings.step(start)], 0, []
    for second in range(1, int(end - start) + 1):
        total = int((crossings.feet[crossings.step(start + second)] - first) / pulse)
        words.append([total - counted, 0])
        counted = total
    marks = []
    for n, (node, feet) in enumerate(drive.nodes):
        late = rng.uniform(3, 9) if case == "marks-late" and n % 3 == 1 else rng.uniform(0, 1.5)
        pressed = crossings.time(feet) - start + late
        marks.append([int(pressed) + 1, node])
        if case == "marks-twice" and n % 3 == 1:
            marks.append([int(pressed + rng.uniform(2, 6)) + 1, None])
    for sample, _ in marks:
        words[sample - 1][1] = NODE_KEY
    return start, words, marks


def write_counter(path, day, whole, crossings, rng):
    """The dump of a counter with the whole passes as its runs; returns what the truth says of each."""
    _, zone, study = DAYS[path.stem]
    records, lines = {}, []
    for forward in (True, False):
        drives = [drive for drive in whole if drive.forward == forward]
        for number, drive in enumerate(drives, 1):
            calibration = (1246, 1582, 2010, 2950)[number % 4] if day.case == "calibrations" else 1246
            start, words, marks = counter_run(drive, crossings, day.case, calibration, rng)
            here = datetime.fromtimestamp(start, timezone.utc) + timedelta(hours=zone)
            key = study if forward else study + 1
            lines.append(f"T,{key:03d},{number:03d},{SITES[forward]},{here:%H%M},{here:%m%d%y},{calibration:05d}")
            data = [f"{pulses:03d} {mark:03d}" for pulses, mark in words]
            lines += [",".join(data[i:i + 10]) for i in range(0, len(data), 10)] + [f"{len(data):05d}"]
            records[id(drive)] = {"file": path.name, "run": f"S{key:03d}R{number:03d}-{SITES[forward]}-1",
                                  "start_utc": start, "seconds": len(words), "calibration": calibration, "marks": marks}
    path.write_bytes("".join(line + "\r\n" for line in lines + [":" * 20]).encode("ascii"))
    return records


def truth_of_node(node, feet, crossings, timing, gaps):
    enter, passed, leave = (crossings.time(feet + way) for way in (-UPSTREAM, 0, DOWNSTREAM))
    stopped, stops = crossings.stops(enter, leave)
    arrived = stops[0][0] if stops else passed
    hidden = [gap for gap in gaps if gap[1] - gap[0] > 5]
    return {
        "name": NAMES[node], "index": node, "passed_utc": round(passed, 2),
        "enter_utc": round(enter, 2), "leave_utc": round(leave, 2),
        "stop_began_utc": round(stops[0][0], 1) if stops else None,
        "departed_utc": round(stops[-1][1], 1) if stops else None,
        "stops": len(stops), "stopped_seconds": round(stopped, 1), "arrived_on": timing.colour(arrived),
        "control_delay": round(leave - enter - (UPSTREAM + DOWNSTREAM) / (IDEAL_SPEED * MPH), 2),
        "position_seen": not any(a - 1 < passed < b + 1 for a, b in hidden),
        "band_seen": not any(a < leave and b > enter for a, b in hidden)}


def logged(gaps, begin, end):
    """When the receiver logged its first and its last point."""
    first, last = ([gap for gap in gaps if gap[0] <= begin], [gap for gap in gaps if gap[1] >= end])
    return first[0][1] if first else begin, last[0][0] if last else end


def truth_of_pass(drive, period, crossings, timings, gaps, begin, end):
    """With the nodes whose bands lie in this time; nothing when that is none."""
    nodes = [truth_of_node(node, feet, crossings, timings[node], gaps) for node, feet in drive.nodes]
    nodes = [node for node in nodes if begin <= node["enter_utc"] and node["leave_utc"] <= end]
    if not nodes:
        return None
    return {"direction": 0 if drive.forward else 1, "direction_name": "NB" if drive.forward else "SB",
            "before": period == "before", "file": f"{period}.gpx", "partial": len(nodes) < len(NAMES),
            "start_utc": nodes[0]["enter_utc"], "end_utc": nodes[-1]["leave_utc"],
            "travel_time": round(nodes[-1]["passed_utc"] - nodes[0]["passed_utc"], 2),
            "stops": sum(node["stops"] for node in nodes),
            "stopped_seconds": round(sum(node["stopped_seconds"] for node in nodes), 1),
            "control_delay": round(sum(node["control_delay"] for node in nodes), 2), "nodes": nodes}


def make_day(folder, period, street, timings, options):
    rng = random.Random(options.seed * 100 + list(DAYS).index(period))
    day = Day(street, options.rounds, options.case, rng)
    day.start = int(datetime.fromisoformat(DAYS[period][0] + "+00:00").timestamp())
    car = Car(day.route, timings, 39 * MPH, day.start, rng)
    car.drive()
    crossings = Crossings(car)
    whole = [drive for drive in day.route.passes if len(drive.nodes) == len(NAMES)]
    gaps = no_points(day, crossings, whole, rng)
    write_track(folder / f"{period}.gpx", day, car, gaps, rng)
    records = write_counter(folder / f"{period}.tdc", day, whole, crossings, rng)
    passes = []
    for drive in day.route.passes:
        driven = truth_of_pass(drive, period, crossings, timings, gaps, crossings.start, car.t)
        if id(drive) in records:
            nodes = [{key: node[key] for key in ("name", "index", "passed_utc", "control_delay")}
                     for node in driven["nodes"]]
            records[id(drive)].update(direction=driven["direction"], before=driven["before"], nodes=nodes)
        begin, end = logged(gaps, crossings.start, car.t)
        passes.append(truth_of_pass(drive, period, crossings, timings, gaps, begin, end))
    others = [{"file": f"{period}.gpx", "what": what, "from_utc": round(crossings.time(a)),
               "to_utc": round(crossings.time(b))} for a, b, what in day.route.others]
    lights = [[node, round(t, 1)] for node, t in car.passed_line]
    return {"passes": [told for told in passes if told], "counter_runs": list(records.values()), "no_pass": others,
            "gaps": [{"file": f"{period}.gpx", "from_utc": a, "to_utc": b} for a, b in gaps],
            "stop_line_passed": {period: lights}}


def corridor_truth(street, timings):
    def node_of(n, s):
        latitude, longitude = street.degrees(*street.place(s, 0.0))
        timing = {period: vars(timings[period][n]) for period in DAYS}
        return {"name": NAMES[n], "latitude": round(latitude, 6), "longitude": round(longitude, 6),
                "distance_ft": round(s, 1), "control": "signal", "speed_limit_mph": SPEED_LIMIT, "timing": timing}
    return {"directions": ["NB", "SB"], "ideal_speed_mph": IDEAL_SPEED, "upstream_ft": UPSTREAM,
            "downstream_ft": DOWNSTREAM, "amber_seconds": AMBER,
            "nodes": [node_of(n, s) for n, s in enumerate(street.nodes)]}


def main():
    parser = argparse.ArgumentParser(description="Makes a corridor driven before and after a retiming, and its truth.",
                                     epilog="cases: " + "; ".join(f"{name}: {what}" for name, what in CASES.items()))
    parser.add_argument("folder", type=Path)
    parser.add_argument("seed", type=int, nargs="?", default=1)
    parser.add_argument("--case", choices=CASES)
    parser.add_argument("--rounds", type=int, help="drives each way a day (10; 4 with a case)")
    options = parser.parse_args()
    options.rounds = options.rounds or (4 if options.case else 10)
    options.folder.mkdir(parents=True, exist_ok=True)
    rng = random.Random(options.seed)
    street = make_street(rng)
    timings = make_timings(street.nodes, rng)
    truth = {"seed": options.seed, "case": options.case, "corridor": corridor_truth(street, timings), "passes": [],
             "counter_runs": [], "no_pass": [], "gaps": [], "stop_line_passed": {}}
    for period in DAYS:
        for key, value in make_day(options.folder, period, street, timings[period], options).items():
            truth[key] = {**truth[key], **value} if isinstance(value, dict) else truth[key] + value
    text = json.dumps(truth, separators=(",", ":"))
    for begin in ('{"name"', '{"direction"', '{"file"'):
        text = text.replace(begin, "\n" + begin)
    (options.folder / "truth.json").write_bytes((text + "\n").encode("ascii"))
    rows = [f'{node["name"]},{node["latitude"]:.6f},{node["longitude"]:.6f}' for node in truth["corridor"]["nodes"]]
    (options.folder / "corridor.csv").write_bytes("\n".join(["name,latitude,longitude", *rows, ""]).encode("ascii"))


if __name__ == "__main__":
    main()
