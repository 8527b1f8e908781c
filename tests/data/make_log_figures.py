#!/usr/bin/env python3
"""Small logs of a GPS, an OBD and a combined logger and the runs they make, computed apart from the program.

    python3 tests/data/make_log_figures.py > tests/data/log_figures.json

Each log holds points outside any run, a night drive of runs with seconds that are missing or without a speed, rows out
of order and without a time of day. "samples" are the bytes of a run file behind its header.
"""
import json
import math
import random
import struct

DAY0 = 39521  # 14 March 2008
NO_SPEED = -1.0


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


FACTOR = single(3600 / 5280)
SIDES = {1: "SB", 2: "NB", 3: "WB", 4: "EB"}


def text(value, width):
    return value.encode("cp1252").ljust(width)[:width]


def drive(rng):
    """Points of one log: dicts with the time in seconds of the day, fractions among them."""
    points = []
    start = 86400 - 70
    for run in (0, 1, 2, -3, 7):
        speed = 0.0
        for second in range(start, start + 24):
            speed = max(0.0, speed + rng.uniform(-9, 12))
            if rng.random() < 0.35:
                continue
            for copy in range(2 if rng.random() < 0.2 else 1):
                seconds = second + rng.choice([0, 0, 0.2, -0.3])
                points.append({
                    "run": run, "seconds": 0 if rng.random() < 0.05 else seconds,
                    "gps": NO_SPEED if rng.random() < 0.25 else rng.choice([single(speed), 3.75, 300.0]),
                    "obd": NO_SPEED if rng.random() < 0.25 else single(speed),
                    "node": rng.choice([0, 0, 0, 0, 1, 4]), "delay": rng.choice([-1, -1, 0, 3, 40, 127, 128, 300]),
                    "side": rng.choice([0, 0, 2, 3]), "fix": rng.randint(0, 2), "sats": rng.randint(3, 11),
                    "heading": single(rng.uniform(0, 360)), "hdop": single(rng.uniform(0.8, 4)),
                    "lat": 42 + second / 1e6 + rng.uniform(0, 3e-4), "lon": -83 - rng.uniform(0, 3e-4)})
        start += 30
    # Neighbours change places, so that the file is out of order.
    for i in range(3, len(points), 7):
        points[i - 1], points[i] = points[i], points[i - 1]
    return points


def date(seconds):
    return DAY0 + seconds / 86400


def gps_bytes(p):
    return struct.pack("<hhffdddhfhhh", p["run"], p["fix"], p["gps"], p["heading"], date(p["seconds"]), p["lat"],
                       p["lon"], p["sats"], p["hdop"], p["node"], p["delay"], p["side"])


def obd_bytes(p):
    return (struct.pack("<hd8fhhh", p["run"], date(p["seconds"]), p["obd"], 1800, 30, 12, 180, 75, 9, 1.5, p["node"],
                        p["delay"], p["side"]) + text("P0420", 16) + text("OK", 16) + text("", 16))


def log_bytes(kind, points):
    prefix = struct.pack("<hhhd", 2, 0, 0, DAY0) + b"XX"
    names = text("Main Street 2008", 32) + text("Main/NB", 20)
    gps_header = names + text("sunny", 32) + struct.pack("<hhih", 1, 3, 4800, 0) + bytes(6)
    obd_header = names + text("Car 7", 32) + struct.pack("<hhihh", 1, 3, 9600, 0, 2) + bytes(24)
    header = gps_header if kind == "gd2" else obd_header
    record = {"gd2": gps_bytes, "od2": obd_bytes, "ddf": lambda p: gps_bytes(p) + obd_bytes(p)}[kind]
    return prefix + header + b"".join(record(p) for p in points)


def reviewed(points):
    rows = [dict(p, seconds=round(p["seconds"])) for p in points if p["run"] != 0]
    rows.sort(key=lambda p: (p["seconds"], p["run"]))
    timed = [i for i, p in enumerate(rows) if p["seconds"] % 86400 != 0]
    logged = [p["seconds"] for p in rows]
    for i in (i for i in range(len(rows)) if i not in timed):
        own = [k for k in timed if rows[k]["run"] == rows[i]["run"]] or timed
        alike = [k for k in range(len(rows)) if own is timed or rows[k]["run"] == rows[i]["run"]]
        before = [k for k in own if k < i]
        near = before[-1] if before else own[0]
        rows[i]["seconds"] = logged[near] + alike.index(i) - alike.index(near)
    return rows


def speed_of(kind, p):
    if kind == "gd2":
        return p["gps"]
    return p["gps"] if kind == "ddf" and p["obd"] == NO_SPEED else p["obd"]


def interpolated(known, second):
    if second in known:
        return known[second]
    before = max((s for s in known if s < second), default=None)
    after = min((s for s in known if s > second), default=None)
    if before is None or after is None:
        return known[after if before is None else before] if known else 0.0
    return known[before] + (known[after] - known[before]) * (second - before) / (after - before)


def feet_between(p, q):
    """By vectors, unlike the haversine formula."""
    def unit(r):
        lat, lon = math.radians(r["lat"]), math.radians(r["lon"])
        return math.cos(lat) * math.cos(lon), math.cos(lat) * math.sin(lon), math.sin(lat)
    a, b = unit(p), unit(q)
    cross = (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])
    angle = math.atan2(math.hypot(*cross), sum(x * y for x, y in zip(a, b)))
    return angle * 6371008.8 / 0.3048


def fill_gaps(kind, by_second, known):
    """Puts the speeds of gaps that do not go by the speeds beside them into `known`; the note on all."""
    kinds = {"standing": [], "by position": [], "by speed": []}
    seconds = [s for s, points in by_second.items() if points]
    for a, b in zip(seconds, seconds[1:]):
        if b - a < 3:
            continue
        filled, speed = "by speed", None
        if kind != "od2":
            feet = feet_between(by_second[a][-1], by_second[b][-1])
            speeds = [speed_of(kind, by_second[s][-1]) for s in (a, b)]
            stands = feet < 100 and any(v < 15 for v in speeds if v != NO_SPEED)
            filled, speed = ("standing", 0) if stands else ("by position", feet / (b - a) * 3600 / 5280)
            known.update({s: speed for s in range(a + 1, b)})
        kinds[filled].append(b - a)
    parts = [f"{len(each)} {name} {sum(each)} s" for name, each in kinds.items() if each]
    return "gaps: " + ", ".join(parts) if parts else ""


def run_of(kind, number, rows):
    start, end = min(p["seconds"] for p in rows), max(p["seconds"] for p in rows)
    by_second = {s: [p for p in rows if p["seconds"] == s] for s in range(start, end + 1)}
    known = {s: speed_of(kind, ps[-1]) for s, ps in by_second.items() if ps and speed_of(kind, ps[-1]) != NO_SPEED}
    note = fill_gaps(kind, by_second, known)
    samples, feet, sections = b"", 0, 2
    for second, points in by_second.items():
        pulses = min(255, max(0, round(interpolated(known, second) / FACTOR)))
        feet += pulses
        delays = [p["delay"] for p in points if 1 <= p["delay"] <= 127]
        word = pulses + 256 * (delays[-1] if delays else 0)
        if any(p["node"] > 0 for p in points):
            word = pulses + 0x8000
            sections += 1
        samples += struct.pack("<H", word)
        if not points:
            samples += bytes(46)
            continue
        p = points[-1]
        has_gps = kind != "od2"
        samples += struct.pack("<ddffhfhdhhh", *((p["lat"], p["lon"]) if has_gps else (0, 0)), speed_of(kind, p),
                               p["heading"] if has_gps else 0, p["fix"] if has_gps else 0,
                               p["hdop"] if has_gps else 0, p["sats"] if has_gps else 0, date(second), p["node"],
                               p["delay"], p["side"])
    sides = [SIDES[p["side"]] for p in rows if p["side"] in SIDES]
    day, time = divmod(start, 86400)
    return {"RunName": f"Main_NB-R{number:03}", "RunDate": f"2008-03-{14 + day}T00:00:00",
            "RunTime": f"1899-12-30T{time // 3600:02}:{time // 60 % 60:02}:{time % 60:02}",
            "SampleCount": len(by_second), "RunNumber": number, "CountNumber": 0, "SiteCode": "Main Street 2008",
            "CalConstant": 1000, "HeaderWord1": -1 if sections >= 3 else 0, "Before": -1, "RunLength": feet,
            "Duration": len(by_second), "NumberOfSections": sections,
            "Notes": "; ".join((["Direction " + sides[0]] if sides else []) + ([note] if note else [])), "samples": samples.hex()}


def main():
    rng = random.Random(5)
    figures = {}
    for kind in ("gd2", "od2", "ddf"):
        points = drive(rng)
        rows = reviewed(points)
        assert any(p["seconds"] % 86400 == 0 and p["run"] for p in points)
        figures[kind] = {"log": log_bytes(kind, points).hex(), "start": round(points[0]["seconds"]),
                         "times": [p["seconds"] for p in rows],
                         "runs": [run_of(kind, r, [p for p in rows if p["run"] == r]) for r in (1, 2, 7)]}
    text = json.dumps(figures)
    for part in ('"gd2"', '"od2"', '"ddf"', '"times"', '{"RunName"', '"samples"'):
        text = text.replace(part, "\n" + part)
    print(text)


main()
