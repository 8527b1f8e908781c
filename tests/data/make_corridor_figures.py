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
MANOEUVRES = (2, 3, 4, 6, 7, 8)


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def records():
    text = (pathlib.Path(__file__).parents[2] / "samples" / "Corridor.tdc").read_text("ascii")
    fields = (part.lstrip(" ") for part in re.split(r"\r\n|[,\r\n]", text))
    while next(fields) != ":" * 20:
        header = [next(fields) for _ in range(6)]
        words = []
        while len(word := next(fields)) >= 7:
            words.append((int(word[:3]), int(word[4:7])))
        yield header, words, int(word)


def delay(feet):
    speed = [single(single(3600 / 5280) * step) for step in feet]
    ways = list(itertools.accumulate(feet))
    start = next(at for at, way in enumerate(ways) if way >= START)
    # The start sample's distance counts a second time; the last sample is never looked at.
    end = next(at for at in range(start, len(feet) - 1) if ways[at] + feet[start] >= END)
    ideal = single(single(speed[start] + speed[end]) / 2)
    return {
        "CDStartSample": start + 1,
        "CDEndSample": end + 1,
        "IdealSpeedCalc": round(ideal),
        "ControlDelay": end - start - round((END - START) / (5280 / 3600 * ideal)),
        "StopDelay": sum(step <= 0 for step in speed[start:end + 1]),
    }


def sections(feet, marks):
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


def run_of(header, words, trailer):
    study, number, site, _, _, calibration = header
    step = single(int(calibration) / 1000)
    feet = [round(step * pulses) for pulses, _ in words]
    marks = [mark for _, mark in words]
    return {
        "RunName": f"S{study}R{number}-{site:8.8}-1",
        "SampleCount": len(words),
        "RunLength": round(step * sum(pulses for pulses, _ in words)),
        "NumberOfSections": sum(mark >= 128 for mark in marks) + 2,
        "HeaderWord3": sum(1 <= mark <= 127 for mark in marks),
        "HeaderLong": trailer,
        **delay(feet),
        "Sections": sections(feet, marks),
    }


runs = [run_of(*record) for record in records() if record[0][0] == "001"]
control, stop = (round(sum(run[name] for run in runs) / len(runs)) for name in ("ControlDelay", "StopDelay"))
figures = {"StartDist": START, "EndDist": END, "AvgControlDelay": control, "AvgStopDelay": stop,
           "RatioHundredths": int(100 * control / stop + 0.5), "Runs": runs}
print(json.dumps(figures).replace('{"RunName"', '\n{"RunName"'))
