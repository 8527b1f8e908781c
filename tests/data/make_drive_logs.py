#!/usr/bin/env python3
"""Drives through a street with signals, and what loggers that miss seconds write of them.

    python3 tests/data/make_drive_logs.py > tests/data/drive_logs.json

The vehicle is moved in tenths of a second over the WGS 84 ellipsoid, so that "feet" is what it did, not what a log
says. "gaps" are seconds without a row, [from, to, kind], the kind by what the vehicle did there.
"""
import json
import math
import random

FEET = 0.3048
MPH = 5280 / 3600  # feet a second
AXIS, FLATTENING = 6378137.0, 1 / 298.257223563


class Street:
    """A vehicle at a place, its course turning a little all the time."""

    def __init__(self, rng, latitude, longitude):
        self.rng, self.lat, self.lon, self.course, self.speed = rng, latitude, longitude, rng.uniform(0, 360), 0.0
        self.feet = 0.0

    def move(self, seconds):
        step = self.speed * seconds
        self.feet += step
        self.course += self.rng.gauss(0, 0.02) * step / 5
        e2 = FLATTENING * (2 - FLATTENING)
        w = 1 - e2 * math.sin(math.radians(self.lat)) ** 2
        meridian, normal = AXIS * (1 - e2) / w ** 1.5, AXIS / math.sqrt(w)
        north = step * FEET * math.cos(math.radians(self.course))
        east = step * FEET * math.sin(math.radians(self.course))
        self.lat += math.degrees(north / meridian)
        self.lon += math.degrees(east / (normal * math.cos(math.radians(self.lat))))


def drive(rng, latitude, longitude, seconds):
    """(second, mph, latitude, longitude, feet so far) for each second of a drive from signal to signal."""
    car, rows, red, cruise, ahead = Street(rng, latitude, longitude), [], 5.0, 45.0, 1200.0
    for tick in range(seconds * 10):
        if tick % 10 == 0:
            rows.append((tick // 10, car.speed / MPH, car.lat, car.lon, car.feet))
        braking = car.speed ** 2 / (2 * 6.0)
        if red > 0:
            red -= 0.1
            car.speed = 0.0
        elif ahead <= braking + 1:
            car.speed = max(0.0, car.speed - 0.6)
            if car.speed == 0.0:
                red, ahead = rng.choice([0.5, 12, 25, 40, 60, 90]), rng.uniform(500, 2500)
                cruise = rng.uniform(35, 70)
        else:
            car.speed = min(cruise, car.speed + 0.44)
        before = car.feet
        car.move(0.1)
        ahead -= car.feet - before
    return rows


def logged(rng, rows, interval, pauses, drops):
    """What a logger writes: a row every `interval` seconds, none while it stands still if it `pauses`, none in `drops`.
    Positions are off by a foot or two."""
    noise = lambda: rng.gauss(0, 1.5) * FEET / 111000
    out = []
    for second, mph, lat, lon, _ in rows:
        dropped = any(start < second < end for start, end in drops)
        if second % interval or dropped or (pauses and mph < 0.5):
            continue
        out.append((second, round(mph, 1), round(lat + noise(), 7), round(lon + noise(), 7)))
    return out


def gaps_of(rows, log):
    """Standing where the vehicle moved less than 100 feet, with a speed beside it below 15 mph."""
    feet, found = {row[0]: row[4] for row in rows}, []
    for (a, va, *_), (b, vb, *_) in zip(log, log[1:]):
        if b - a >= 3:
            near = feet[b] - feet[a] < 100
            found.append([a, b, "standing" if near and min(va, vb) < 15 else "position"])
    return found


def truth(rows, log):
    inside = [row for row in rows if log[0][0] <= row[0] <= log[-1][0]]
    ends = (inside[0][1] + inside[-1][1]) * MPH / 2  # a sample is the second around its row
    return {"feet": round(inside[-1][4] - inside[0][4] + ends), "gaps": gaps_of(rows, log)}


def cases():
    """name, start in seconds of the day, latitude, longitude, seconds, interval, pauses, drops"""
    yield "one row a second", 7 * 3600, 42.3, -83.1, 240, 1, False, []
    yield "pauses at signals", 8 * 3600, 42.3, -83.1, 420, 1, True, []
    yield "loses its receiver", 9 * 3600, 52.5, -1.9, 420, 1, False, [(40, 64), (150, 258), (300, 303), (310, 312)]
    yield "over midnight, far south-east", 86400 - 150, -33.9, 151.2, 420, 1, True, [(100, 220), (300, 305)]
    yield "a row every five seconds", 11 * 3600, -12.1, -77.0, 900, 5, False, []


def main():
    drives = []
    for number, (name, start, lat, lon, seconds, interval, pauses, drops) in enumerate(cases(), 1):
        rng = random.Random(number)
        rows = drive(rng, lat, lon, seconds)
        log = logged(rng, rows, interval, pauses, drops)
        drives.append({"name": name, "start": start, **truth(rows, log), "rows": log})
    print(json.dumps(drives).replace('{"name"', '\n{"name"').replace('], [', '],['))


main()
