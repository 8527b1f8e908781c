#!/usr/bin/env python3
"""Writes the sample corridor: two counter dumps, a group of version 1 runs and the track of a phone.

Usage: make_samples.py [FOLDER]     (default: the folder of this script)

The corridor is invented. Runs come from a small car-following model, so the
speed profiles have the shape of real drives. The output depends on nothing but
this file: the seed is fixed, and only uniform draws and basic arithmetic are
used.

Units inside: feet, seconds, feet per second. A run is a list of [pulses, mark],
one a second, where mark is a key, NODE or 0.
"""

import random
import struct
import sys
from dataclasses import dataclass
from datetime import date, datetime, timedelta
from math import sqrt
from pathlib import Path

SEED = 21
MPH = 5280 / 3600  # feet per second

# Keys of the counter. A node mark shares the key column, with its own number.
KEY_DELAY_1, KEY_CONGESTION, KEY_SIGNAL, NODE = 12, 15, 16, 128
KEY_LABELS = {KEY_DELAY_1: "Delay 1", KEY_CONGESTION: "Congestion", KEY_SIGNAL: "Signal"}

# The corridor, northbound: stop lines in feet from the start of the run.
CORRIDOR_LENGTH = 7920.0  # 1.5 miles
CROSS_STREETS = [("Oak St", 900.0), ("Elm Ave", 2180.0), ("Maple St", 3740.0),
                 ("Cedar Rd", 5390.0), ("Birch Ave", 6760.0)]

# Driving. The car-following law is the Intelligent Driver Model
# (Treiber, Hennecke and Helbing, 2000) with the car ahead standing still.
TIME_STEP = 0.1
ACCELERATION = 5.6       # from a standstill, ft/s2
COMFORTABLE_BRAKING = 6.5
HARDEST_BRAKING = 10.0   # a driver who would need more runs through the amber
EASING_OFF = 3.5         # slowing to a lower wish, with nothing to stop for
TIME_GAP = 1.1
STANDING_GAP = 5.0
SIGHT = 700.0            # distance at which the driver sees a signal and its queue
START_WAVE = 17.0        # speed at which a queue starts moving, front to back, ft/s
DISCHARGE_SPEED = 27 * MPH
WANDER_MEMORY = 10.0     # seconds in which the drift of the wished speed fades
WANDER_KICK = 0.6        # largest change of the drift in a step: about 2 mph r.m.s.

CYCLE = 90.0


@dataclass
class Signal:
    line: float          # stop line, feet from the start of the run
    green_start: float   # within the cycle
    red: float           # seconds of red (amber included) a cycle
    queue_growth: float  # feet of queue that a second of red adds

    def place_in_queue(self, t, moving_up):
        """(feet behind the line, time of release) for a car that arrives at t, or None.

        A car that is moving up belongs to the queue now leaving: only red stops it.
        """
        phase = (t - self.green_start) % CYCLE  # green first, then red
        green = CYCLE - self.red
        if phase >= green:
            place = self.queue_growth * (phase - green)
            return place, t + CYCLE - phase + place / START_WAVE
        place = self.queue_growth * self.red
        if place > START_WAVE * phase and not moving_up:
            return place, t - phase + place / START_WAVE
        return None


@dataclass
class Slowdown:
    begin: float
    end: float
    speed: float
    key: int


@dataclass
class Conditions:
    """What all runs of one study meet; lists run in the direction of travel."""
    nodes: list          # stop lines
    green_starts: list
    reds: list
    queue_growth: float
    slowdown_keys: list  # each is drawn once a run, with slowdown_chance
    slowdown_chance: float
    cruise_mph: float

    def draw_signals(self, rng):
        """The signals of one run: actuated, so times vary from cycle to cycle."""
        return [Signal(line, green_start + rng.uniform(-8, 8), red * rng.uniform(0.75, 1.1),
                       self.queue_growth * rng.uniform(0.5, 1.3))
                for line, green_start, red in zip(self.nodes, self.green_starts, self.reds)]


class Drive:
    """One car going once through the corridor."""

    def __init__(self, conditions, rng):
        self.rng = rng
        self.signals = conditions.draw_signals(rng)
        self.cruise = conditions.cruise_mph * MPH * rng.uniform(0.96, 1.04)
        self.wander = 0.0                      # drift of the wished speed
        self.t = rng.uniform(0.0, CYCLE)       # where in the cycle the run begins
        self.x = 0.0
        self.v = self.cruise * rng.uniform(0.75, 1.0)
        self.held = None                       # (stop position, time of release)
        self.discharging = False               # moving up in a queue just released
        self.stop_logged = False
        self.slowdowns = self.draw_slowdowns(conditions)

    def draw_slowdowns(self, conditions):
        """At most one a block, so that two never overlap."""
        blocks = len(conditions.nodes) - 1
        first = int(self.rng.random() * blocks)
        slowdowns = []
        for n, key in enumerate(conditions.slowdown_keys):
            if self.rng.random() < conditions.slowdown_chance:
                begin = conditions.nodes[(first + n) % blocks] + self.rng.uniform(300, 500)
                slowdowns.append(Slowdown(begin, begin + self.rng.uniform(350, 600),
                                          self.rng.uniform(14, 24) * MPH, key))
        return slowdowns

    def wished_speed(self):
        self.wander += (self.rng.uniform(-WANDER_KICK, WANDER_KICK)
                        - self.wander * TIME_STEP / WANDER_MEMORY)
        wished = [self.cruise] + [slow.speed for slow in self.slowdowns
                                  if slow.begin <= self.x < slow.end]
        if self.discharging:
            wished.append(DISCHARGE_SPEED)
        return min(wished) + self.wander

    def watch_signal(self):
        """Decides whether the next signal holds the car, and when it lets go."""
        while self.signals and self.x >= self.signals[0].line:
            self.signals.pop(0)
            self.held, self.discharging = None, False
        if self.held and self.t >= self.held[1]:
            self.held, self.discharging, self.stop_logged = None, True, False
        if self.held or not self.signals:
            return
        gap = self.signals[0].line - self.x
        place = self.signals[0].place_in_queue(self.t, self.discharging)
        # How far back a place the car can still stop for; none: it runs the amber.
        furthest = gap - self.v * self.v / (2 * HARDEST_BRAKING) - STANDING_GAP
        if place is None or gap > SIGHT or furthest < 0:
            return
        self.held = (self.signals[0].line - min(place[0], furthest),
                     place[1] + self.rng.uniform(0.8, 2.4))

    def step(self):
        self.watch_signal()
        ratio = self.v / self.wished_speed()
        acceleration = max(ACCELERATION * (1 - ratio * ratio * ratio * ratio), -EASING_OFF)
        if self.held:
            gap = max(self.held[0] - self.x, 0.5)
            closing = self.v * self.v / (2 * sqrt(ACCELERATION * COMFORTABLE_BRAKING))
            wished_gap = STANDING_GAP + self.v * TIME_GAP + closing
            pressure = ACCELERATION * (wished_gap / gap) * (wished_gap / gap)
            acceleration = max(acceleration - pressure, -HARDEST_BRAKING)
        self.v = max(self.v + acceleration * TIME_STEP, 0.0)
        if self.held and self.v < 1.0 and acceleration < 0.5:
            self.v = 0.0
        self.x += self.v * TIME_STEP
        self.t += TIME_STEP

    def key_due(self):
        """The key that the observer presses now, or 0."""
        if self.held and self.v == 0.0 and not self.stop_logged:
            self.stop_logged = True
            return KEY_SIGNAL
        for slow in self.slowdowns:
            if slow.key and slow.begin <= self.x < slow.end and self.v < slow.speed * 1.3:
                key, slow.key = slow.key, 0
                return key
        return 0


def drive_run(conditions, calibration, rng):
    """One run as the counter records it; calibration is in feet per 1000 pulses."""
    drive, run = Drive(conditions, rng), []
    feet_a_pulse = calibration / 1000 * rng.uniform(0.997, 1.003)  # tyre pressure
    nodes_ahead, keys_waiting, counted = list(conditions.nodes), [], 0
    while drive.x < CORRIDOR_LENGTH:
        for _ in range(round(1 / TIME_STEP)):
            drive.step()
        total = int(drive.x / feet_a_pulse)
        if key := drive.key_due():
            keys_waiting.append(key)
        if nodes_ahead and drive.x >= nodes_ahead[0]:
            nodes_ahead.pop(0)
            mark = NODE
        else:
            mark = keys_waiting.pop(0) if keys_waiting else 0
        run.append([total - counted, mark])
        counted = total
    return run


def add_spikes(run, rng, count):
    """Replaces the count of single cruising seconds by sensor noise."""
    cruising = [i for i in range(5, len(run) - 8)
                if all(pulses > 35 and mark == 0 for pulses, mark in run[i - 2:i + 3])]
    for n in range(count):
        stretch = len(cruising) // count
        i = cruising[n * stretch + int(rng.random() * stretch)]
        run[i][0] += 42 + int(rng.random() * 30) if n % 2 == 0 else -30


def counter_record(study, number, site, clock, day, calibration, run):
    words = [f"{pulses:03d} {mark:03d}" for pulses, mark in run]
    lines = [f"T,{study:03d},{number:03d},{site},{clock},{day},{calibration:05d}"]
    lines += [",".join(words[i:i + 10]) for i in range(0, len(words), 10)]
    return lines + [f"{len(words):05d}"]  # the trailer: how many words were sent


NORTHBOUND = [position for _, position in CROSS_STREETS]
SOUTHBOUND = [CORRIDOR_LENGTH - position for position in reversed(NORTHBOUND)]

# Northbound in the morning peak: long queues, greens that do not fit together.
PEAK = Conditions(NORTHBOUND, [8, 46, 24, 52, 10], [40, 38, 44, 38, 36], 5.0,
                  [KEY_CONGESTION, KEY_CONGESTION, KEY_DELAY_1], 0.4, 43.0)
# Southbound: short queues, greens offset for a platoon at about 43 mph.
AGAINST_PEAK = Conditions(SOUTHBOUND, [0, 25, 50, 71, 4], [42, 38, 40, 36, 40], 2.0,
                          [KEY_DELAY_1], 0.55, 44.5)

# Northbound in the morning peak after a retiming: shorter queues, greens that fit together better.
RETIMED = Conditions(NORTHBOUND, [30, 52, 77, 13, 36], [42, 40, 44, 40, 40], 3.0, [KEY_CONGESTION], 0.4, 43.0)

SPIKES = {(2, 3): 2, (2, 6): 4}  # (study, run): spikes of a loose sensor plug


def counter_study(study, site, day, conditions, first_minute, seed, spikes=SPIKES):
    """The records of eight runs, a quarter of an hour apart."""
    calibration, lines = 1246, []
    for number in range(1, 9):
        rng = random.Random(seed + number)
        minute = first_minute + 15 * (number - 1) + int(rng.random() * 3)
        run = drive_run(conditions, calibration, rng)
        add_spikes(run, rng, spikes.get((study, number), 0))
        lines += counter_record(study, number, site, f"{minute // 60:02d}{minute % 60:02d}", day, calibration, run)
    return lines


def write_counter_file(path, lines):
    path.write_bytes("".join(line + "\r\n" for line in lines + [":" * 20]).encode("ascii"))


def text(value, width):
    return value.encode("cp1252").ljust(width)[:width]


def version_1_file(name, day, minute, number, site, calibration, after, notes, run):
    """Header (3840 bytes) and samples of a version 1 run file."""
    sections, events, since_node, total = [], [], 0, 0
    for pulses, mark in run:
        since_node, total = since_node + pulses, total + pulses
        if mark == NODE:
            sections.append(since_node)
            since_node = 0
        elif mark:
            events.append((total, mark))
    sections.append(since_node)
    used = {key for _, key in events}
    node_names = [street for street, _ in CROSS_STREETS] + ["End of run"]
    header = struct.pack(
        "<h32sddi6shh32s5hihhi8sh", 1, text(name, 32), (day - date(1899, 12, 30)).days,
        minute / 1440, len(run), text("", 6), 1, number, text(site, 32),
        calibration, -1, 0, 0 if after else -1, -1 if after else 0,
        round(total * calibration / 1000), len(run), len(sections) + 1,
        len(run), text("", 8), len(events))
    keys, no_events = range(1, 33), [(0, 0)] * (32 - len(events))
    header += b"".join(text(KEY_LABELS[k] if k in used else "", 32) for k in keys)
    header += struct.pack("<32h", *(-1 if k in used else 0 for k in keys))
    header += struct.pack("<32i", *(position for position, _ in events + no_events))
    header += struct.pack("<32h", *(key for _, key in events + no_events))
    header += b"".join(text(street, 32) for street in node_names + [""] * (64 - len(node_names)))
    header += struct.pack("<64i", *sections, *[0] * (64 - len(sections)))
    header += text(notes, 128)
    return header, struct.pack(f"<{len(run)}H", *(pulses | mark << 8 for pulses, mark in run))


def write_version_1_runs(folder):
    folder.mkdir(parents=True, exist_ok=True)
    before, after = date(1996, 10, 8), date(1997, 5, 13)
    for number, day, minute, conditions, notes, spare_bytes in (
            (1, before, 7 * 60 + 20, PEAK, "Dry, light rain later. Signals not coordinated.", 0),
            (2, before, 7 * 60 + 48, PEAK, "Dry. Signals not coordinated.", 0),
            (3, after, 7 * 60 + 15, RETIMED, "First week after retiming. Clear.", 4),
            (4, after, 7 * 60 + 41, RETIMED, "After retiming. Clear, dry.", 0)):
        calibration = 1582
        run = drive_run(conditions, calibration, random.Random(SEED + 1000 + number))
        name = f"MAINNB{number:02d}"
        header, samples = version_1_file(name, day, minute, number, "MAINST NB", calibration,
                                         day == after, notes, run)
        # Some version 1 files have four unused bytes between notes and samples.
        (folder / f"{name}.rdf").write_bytes(header + bytes(spare_bytes) + samples)


# Where the street lies: its south end, and from there the direction of each of its legs with the feet at which it
# begins. Directions are (east, north, length of both).
SOUTH_END = (40.07, -99.12)
LEGS = [(0.0, (7, 24, 25)), (2600.0, (0, 1, 1)), (5000.0, (-20, 99, 101))]
FEET_A_DEGREE = (364813.3, 279132.6)  # of latitude, of longitude at the middle of the street
LANE = 6.0               # feet to the right of the middle

# A phone: how far it places itself from where it is, feet.
DRIFT_MEMORY = 25.0      # seconds in which the drift fades
DRIFT_KICK = 2.0         # largest change of the drift in a second: about 4 ft r.m.s.
JITTER = 3.0             # largest error that is new each second


def place_on_street(feet, right):
    """Feet east and north of the south end of what lies `right` feet beside the street."""
    east = north = 0.0
    for n, (begin, (to_east, to_north, length)) in enumerate(LEGS):
        end = LEGS[n + 1][0] if n + 1 < len(LEGS) else feet
        way = min(feet, end) - begin
        east, north = east + way * to_east / length, north + way * to_north / length
        if feet <= end:
            break
    return east + right * to_north / length, north - right * to_east / length


def drive_from_kerb(conditions, rng):
    """Feet from the start, a number a second, of a car that stands, drives to the end and stands there."""
    drive = Drive(conditions, rng)
    drive.v, feet = 0.0, [0.0] * int(rng.uniform(40, 90))
    while drive.x < CORRIDOR_LENGTH - 20 or drive.v > 0.0:
        for _ in range(round(1 / TIME_STEP)):
            if not drive.signals and not drive.held and drive.x > CORRIDOR_LENGTH - SIGHT:
                drive.held = (CORRIDOR_LENGTH, float("inf"))
            drive.step()
        feet.append(drive.x)
    return feet + [drive.x] * int(rng.uniform(40, 90))


def seen_by_phone(feet, northbound, rng):
    """Latitude and longitude of each second."""
    drift = [rng.uniform(-6, 6), rng.uniform(-6, 6)]
    for x in feet:
        place = place_on_street(x if northbound else CORRIDOR_LENGTH - x, LANE if northbound else -LANE)
        for axis in (0, 1):
            drift[axis] += rng.uniform(-DRIFT_KICK, DRIFT_KICK) - drift[axis] / DRIFT_MEMORY
        east, north = (place[axis] + drift[axis] + rng.uniform(-JITTER, JITTER) for axis in (0, 1))
        yield SOUTH_END[0] + north / FEET_A_DEGREE[0], SOUTH_END[1] + east / FEET_A_DEGREE[1]


def write_day(path, starts):
    """The track of a phone that rests while the car is parked between its drives, north and south in turns. `starts` are
    times of the day, UTC."""
    lines = ['<?xml version="1.0" encoding="UTF-8"?>', '<gpx version="1.1" creator="make_samples.py" '
             'xmlns="http://www.topografix.com/GPX/1/1">']
    for street, feet in CROSS_STREETS:
        east, north = place_on_street(feet, 0.0)
        lines.append(f'<wpt lat="{SOUTH_END[0] + north / FEET_A_DEGREE[0]:.6f}" '
                     f'lon="{SOUTH_END[1] + east / FEET_A_DEGREE[1]:.6f}"><name>{street}</name></wpt>')
    lines.append("<trk><name>Main St</name><trkseg>")
    for number, start in enumerate(starts):
        rng, northbound = random.Random(SEED + 3000 + number), number % 2 == 0
        feet = drive_from_kerb(PEAK if northbound else AGAINST_PEAK, rng)
        for second, (latitude, longitude) in enumerate(seen_by_phone(feet, northbound, rng)):
            at = datetime.fromisoformat(start) + timedelta(seconds=second)
            lines.append(f'<trkpt lat="{latitude:.6f}" lon="{longitude:.6f}"><time>{at.isoformat()}Z</time></trkpt>')
    path.write_bytes("\n".join(lines + ["</trkseg></trk>", "</gpx>", ""]).encode("ascii"))


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent
    write_version_1_runs(folder / "Version 1 runs")
    write_counter_file(folder / "Corridor.tdc",
                       counter_study(1, "MAINSTNB", "031108", PEAK, 6 * 60 + 52, SEED + 100)
                       + counter_study(2, "MAINSTSB", "031108", AGAINST_PEAK, 6 * 60 + 59, SEED + 200))
    write_counter_file(folder / "Retimed.tdc",
                       counter_study(1, "MAINSTNB", "061008", RETIMED, 6 * 60 + 52, SEED + 2000))
    write_day(folder / "Corridor day.gpx", [f"2026-03-11T{clock}" for clock in (
        "12:02:10", "12:16:41", "12:31:05", "12:47:30", "13:01:12", "13:18:26")])


if __name__ == "__main__":
    main()
