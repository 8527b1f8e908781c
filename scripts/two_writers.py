#!/usr/bin/env python3
"""Lets two commands write to one place at once, round after round, and counts what is lost.

    scripts/two_writers.py [ROUNDS] [VANTOR]    100 rounds with the release build where nothing is given

Each round two "study bounds" change different runs of one study, and two "counter convert" of one counter file write
into one folder. Nothing may be lost: both runs have the boundaries that were asked for, and the folder has each run
twice. Exit status 0 when it is so."""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parent.parent
rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 100
program = sys.argv[2] if len(sys.argv) > 2 else str(root / "build/release/bin/vantor")
counter_file = str(root / "samples/Corridor.tdc")


def vantor(*arguments):
    return subprocess.Popen([program, "--json", *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


def result(process):
    out, err = process.communicate()
    return json.loads(out) if process.returncode == 0 else f"status {process.returncode}: {err}"


lost = []
with tempfile.TemporaryDirectory() as folder:
    os.environ["VANTOR_PROGRAM_FOLDER"] = folder
    group, temp = os.path.join(folder, "Group"), os.path.join(folder, "Temp")
    os.mkdir(group)
    runs = result(vantor("counter", "convert", counter_file, "--to", group))
    result(vantor("study", "new", group, "AM", *runs))
    study = os.path.join(group, "AM.ld2")
    for number in range(rounds):
        start, end = str(300 + number % 50), str(7000 + number % 50)
        answers = [result(both) for both in [vantor("study", "bounds", study, runs[which], "--start-dist", start,
                                                    "--end-dist", end) for which in (0, 1)]]
        shown = result(vantor("study", "show", study))
        for which in (0, 1):
            entry = shown["entries"][which]
            if isinstance(answers[which], str) or (entry["CDStartDist"], entry["CDEndDist"]) != (int(start), int(end)):
                lost.append(f"round {number}: run {which + 1}: {answers[which]}")
        os.mkdir(temp)
        answers = [result(both) for both in [vantor("counter", "convert", counter_file, "--to", temp) for _ in (0, 1)]]
        names = {name for answer in answers if not isinstance(answer, str) for name in answer}
        if len(names) != 2 * len(runs) or names != {path.stem for path in pathlib.Path(temp).iterdir()}:
            lost.append(f"round {number}: {len(names)} of {2 * len(runs)} runs: {answers}")
        shutil.rmtree(temp)
print(f"{rounds} rounds, {len(lost)} losses")
print("\n".join(lost[:20]))
sys.exit(bool(lost))
