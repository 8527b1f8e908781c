#!/usr/bin/env python3
"""Figures of the sample corridor, computed apart from the program, for the end-to-end test.

    python3 tests/data/make_corridor_figures.py > tests/data/corridor_figures.json

Reads samples/Corridor.tdc, decodes the runs of study 001, computes each between 300 and 7600 feet and
counts the seconds, stops and causes of its sections (stopped: no pulses, the stop threshold being 0).
"""
import itertools
import json
import pathlib
import re
import struct

START, END = 300, 7600


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


FACTOR = single(3600 / 5280)


def fields():
    text = (pathlib.Path(__file__).parents[2] / "samples" / "Corridor.tdc").read_text("ascii")
    return iter([part.lstrip(" ") for part in re.split(r"\r\n|[,\r\n]", text)])


def records():
    stream = fields()
    while (start := next(stream)) != ":" * 20:
        header = [start] + [next(stream) for _ in range(6)]
        words = []
        while len(word := next(stream)) >= 7:
            words.append((int(word[:3]), int(word[4:7])))
        yield header, words, int(word)


def delay(words, calibration):
    feet = [round(single(calibration / 1000) * pulses) for pulses, _ in words]
    speed = [single(FACTOR * step) for step in feet]
    last = len(words) - 1  # the last sample is never looked at
    distance = at = 0
    while (distance := distance + feet[at]) < START:
        at += 1
        assert at < last
    start, stops = at, 0
    while True:  # the start sample's distance counts a second time
        distance += feet[at]
        stops += speed[at] <= 0
        if distance >= END:
            break
        at += 1
        assert at < last
    ideal = single(single(speed[start] + speed[at]) / 2)
    ideal_time = round((END - START) / (5280 / 3600 * ideal))
    return {
        "CDStartSample": start + 1,
        "CDEndSample": at + 1,
        "IdealSpeedCalc": round(ideal),
        "ControlDelay": at - start - ideal_time,
        "StopDelay": stops,
    }


MANOEUVRES = (2, 3, 4, 6, 7, 8)


def sections(words, calibration):
    feet = [round(single(calibration / 1000) * pulses) for pulses, _ in words]
    marks = [mark for _, mark in words]
    # The section of a second is the number of nodes flagged before it.
    where = [0] + list(itertools.accumulate(mark >= 128 for mark in marks))
    key = [mark if 1 <= mark <= 32 and mark not in MANOEUVRES else 0 for mark in marks]
    rows = [{"Length": 0, "TravelTime": 0, "StoppedTime": 0, "Stops": 0, "Seconds": {}} for _ in range(where[-1] + 1)]
    for second, step in enumerate(feet):
        rows[where[second]]["Length"] += step
        rows[where[second]]["TravelTime"] += 1
    for stopped, group in itertools.groupby(range(len(feet)), lambda second: feet[second] == 0):
        seconds = list(group)
        if not stopped:
            continue
        approach = [at for at in range(seconds[0]) if where[at] == where[seconds[0]]]
        pressed = [key[at] for at in seconds if key[at]] or [key[at] for at in approach if key[at]] or [0]
        rows[where[seconds[0]]]["Stops"] += 1
        for at in seconds:
            rows[where[at]]["StoppedTime"] += 1
            causes = rows[where[at]]["Seconds"]
            causes[str(pressed[-1])] = causes.get(str(pressed[-1]), 0) + 1
    return rows


def main():
    runs = []
    for header, words, trailer in records():
        _, study, number, site, time, date, calibration = header
        if study != "001":
            continue
        nodes = sum(mark >= 128 for _, mark in words)
        keys = [mark for _, mark in words if 1 <= mark <= 127]
        runs.append({
            "RunName": f"S{study}R{number}-{site:8.8}-1",
            "SampleCount": len(words),
            "RunLength": round(single(int(calibration) / 1000) * sum(pulses for pulses, _ in words)),
            "NumberOfSections": nodes + 2,
            "HeaderWord3": len(keys),
            "HeaderLong": trailer,
            **delay(words, int(calibration)),
            "Sections": sections(words, int(calibration)),
        })
    control = round(sum(run["ControlDelay"] for run in runs) / len(runs))
    stop = round(sum(run["StopDelay"] for run in runs) / len(runs))
    print(json.dumps({"StartDist": START, "EndDist": END, "Runs": runs, "AvgControlDelay": control,
                      "AvgStopDelay": stop, "RatioHundredths": int(100 * control / stop + 0.5)}, indent=1))


main()
