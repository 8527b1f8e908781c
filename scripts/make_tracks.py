#!/usr/bin/env python3
"""Makes tracks of drives that a model of motion knows the truth about: GPX, NMEA and CSV of the same drive at 1, 5 and
0.2 points a second, clean and with the wandering of a receiver, in all corners of the world.

    scripts/make_tracks.py FOLDER [SEED]

truth.json beside them has of each drive its start (seconds UTC since 1970), duration (s), length (m) and its stops
(seconds from the start, seconds standing).
"""

import datetime
import json
import math
import random
import sys
from pathlib import Path

EARTH = 6371008.8
STEP = 0.1  # seconds of the model

# Latitude, longitude, start (UTC), white and wandering noise (m), seconds at which nothing was logged.
DRIVES = {
    "clean": (42.33, -83.05, "2026-03-04T15:00:00", 0, 0, []),
    "midnight": (48.14, 11.58, "2025-12-31T23:52:00", 0, 0, []),
    "dateline": (-17.80, 179.995, "2026-02-28T11:00:00", 0, 0, []),
    "south": (-33.87, 151.21, "2026-06-30T22:00:00", 0, 0, []),
    "jitter": (42.33, -83.05, "2026-03-04T15:00:00", 0.7, 1.5, []),
    "noisy": (42.33, -83.05, "2026-03-04T15:00:00", 1.2, 2.0, []),
    "gaps": (51.51, -0.13, "2026-05-01T07:00:00", 0, 0, [(200, 240), (610, 1100)]),
}


def speeds(random_):
    """Speed (m/s) every STEP seconds: cruising, braking to a stop, standing, starting again."""
    trace, stops, speed = [], [], 0.0

    def go(target, rate):
        nonlocal speed
        while abs(speed - target) > 1e-9:
            speed = min(target, speed + rate * STEP) if target > speed else max(target, speed - rate * STEP)
            trace.append(speed)

    def stay(seconds):
        if speed == 0:
            stops.append((len(trace) * STEP, seconds))
        trace.extend([speed] * round(seconds / STEP))

    stay(45)
    for _ in range(14):
        go(random_.uniform(8, 20), random_.uniform(1.0, 2.0))
        stay(random_.uniform(15, 60))
        if random_.random() < 0.3:
            go(random_.uniform(3, 6), 1.5)
            stay(random_.uniform(5, 15))
        go(0, random_.uniform(1.5, 3.0))
        stay(round(random_.uniform(6, 60)))
    stay(90)
    return trace, [stops[0], *stops[1:-2], (stops[-2][0], stops[-2][1] + stops[-1][1])]


def positions(trace, latitude, longitude, random_, white, wander):
    """Each STEP's position as a receiver tells it; headings turn slowly."""
    heading, far_north, far_east = 1.0, 0.0, 0.0
    keep = math.exp(-STEP / 25)
    for speed in trace:
        heading += random_.gauss(0, 0.004) * (speed > 0)
        latitude += math.degrees(speed * STEP * math.cos(heading) / EARTH)
        longitude += math.degrees(speed * STEP * math.sin(heading) / EARTH / math.cos(math.radians(latitude)))
        longitude = (longitude + 180) % 360 - 180
        far_north = keep * far_north + math.sqrt(1 - keep * keep) * random_.gauss(0, wander)
        far_east = keep * far_east + math.sqrt(1 - keep * keep) * random_.gauss(0, wander)
        north, east = far_north + random_.gauss(0, white), far_east + random_.gauss(0, white)
        yield (latitude + math.degrees(north / EARTH),
               (longitude + math.degrees(east / EARTH / math.cos(math.radians(latitude))) + 180) % 360 - 180)


def sentence(body):
    checksum = 0
    for byte in body.encode():
        checksum ^= byte
    return f"${body}*{checksum:02X}\r\n"


def degrees_minutes(value, width, letters):
    side = letters[value < 0]
    minutes = round(abs(value) * 60, 5)
    return f"{int(minutes // 60):0{width}}{minutes % 60:08.5f},{side}"


def write(folder, name, start, points):
    """Points are (seconds from the start, latitude, longitude, speed in m/s)."""
    gpx = ['<?xml version="1.0" encoding="UTF-8"?>\n<gpx version="1.1" creator="make_tracks" '
           f'xmlns="http://www.topografix.com/GPX/1/1">\n<trk><name>{name}</name><trkseg>\n']
    nmea, csv = [], ["time;lat;lon;speed (km/h)\n"]
    for seconds, latitude, longitude, speed in points:
        at = datetime.datetime.fromtimestamp(start + seconds, datetime.timezone.utc)
        iso = f"{at:%Y-%m-%dT%H:%M:%S}.{at.microsecond // 1000:03}Z"
        gpx.append(f'<trkpt lat="{latitude:.8f}" lon="{longitude:.8f}">\n  <time>{iso}</time>\n</trkpt>\n')
        place = f"{degrees_minutes(latitude, 2, 'NS')},{degrees_minutes(longitude, 3, 'EW')}"
        clock = f"{at:%H%M%S}.{at.microsecond // 10000:02}"
        nmea.append(sentence(f"GPGGA,{clock},{place},1,08,0.9,200.0,M,-34.0,M,,"))
        nmea.append(sentence(f"GPRMC,{clock},A,{place},{speed * 3600 / 1852:.3f},90.0,{at:%d%m%y},,,A"))
        csv.append(f"{iso};{latitude:.8f};{longitude:.8f};{speed * 3.6:.3f}\n".replace(".", ","))
    gpx.append("</trkseg></trk>\n</gpx>\n")
    csv = [line.replace(",000Z", ".000Z") for line in csv]
    for ending, lines in (("gpx", gpx), ("nmea", nmea), ("csv", csv)):
        (folder / f"{name}.{ending}").write_bytes("".join(lines).encode())


def main(folder, seed):
    folder.mkdir(parents=True, exist_ok=True)
    truth = {}
    for number, (name, (latitude, longitude, begin, white, wander, gaps)) in enumerate(DRIVES.items()):
        random_ = random.Random(seed * 1000 + number)
        start = datetime.datetime.fromisoformat(begin + "+00:00").timestamp()
        trace, stops = speeds(random_)
        places = list(positions(trace, latitude, longitude, random_, white, wander))
        truth[name] = {"start": start, "duration": (len(trace) - 1) // 10, "length": sum(trace) * STEP, "stops": stops,
                       "gaps": gaps}
        for rate in (1, 5, 0.2):
            points = [(i * STEP, *places[i], trace[i]) for i in range(0, len(trace), round(1 / rate / STEP))
                      if not any(first <= i * STEP < last for first, last in gaps)]
            write(folder, f"{name}-{rate}", start, points)
    (folder / "truth.json").write_text(json.dumps(truth, indent=1))


if __name__ == "__main__":
    main(Path(sys.argv[1]), int(sys.argv[2]) if len(sys.argv) > 2 else 1)
