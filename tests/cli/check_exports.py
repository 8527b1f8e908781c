#!/usr/bin/env python3
"""Makes a study of the sample runs with the program, exports it as workbooks and reads each one with a reader that
the program has no part in.

    tests/cli/check_exports.py PROGRAM SAMPLES
"""
import json
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../platform"))
from read_workbook import sheets_of, without_empty_end

program, samples = sys.argv[1:]


def vantor(*arguments):
    done = subprocess.run([program, *arguments, "--json"], capture_output=True, text=True, check=True)
    return json.loads(done.stdout)


def expected(entry, folder):
    run = vantor("run", "show", os.path.join(folder, entry["EntryRunName"] + ".rd2"))
    kind = "Primary" if run["HeaderWord1"] == -1 else "Secondary"
    counted = "Counted" if entry["CDStartDist"] and entry["CDEndDist"] else "Not counted"
    return [entry["EntryRunName"], {"date": run["RunDate"]}, {"time": run["RunTime"].split("T")[1]}, kind,
            entry["CDStartDist"], entry["CDEndDist"], entry["IdealSpeedCalc"], entry["IdealSpeedUser"],
            entry["ControlDelay"], entry["LOSGrade"], entry["StopDelay"], counted, "; ".join(entry["warnings"])]


with tempfile.TemporaryDirectory() as folder:
    os.environ["VANTOR_PROGRAM_FOLDER"] = folder
    runs = vantor("counter", "convert", os.path.join(samples, "Corridor.tdc"), "--to", folder)
    study = os.path.join(folder, "AM.ld2")
    vantor("study", "new", folder, "AM", *runs)
    shown = vantor("study", "bounds", study, *runs[:-1], "--start-dist", "300", "--end-dist", "7000")
    rows = [expected(entry, folder) for entry in shown["entries"]]
    assert len(rows) >= 8 and any(row[8] != 0 for row in rows), rows

    for output in (os.path.join(folder, "AM.xls"), os.path.join(folder, "AM.xlsx")):
        assert vantor("study", "export", study, "--output", output) == {"rows": len(rows)}
        listed, fields = sheets_of(output)
        assert (listed["name"], fields["name"], listed["frozenRows"]) == ("Runs", "Study", 1), (listed, fields)
        heads, *found = listed["rows"]
        assert heads[0] == "Run Name" and len(heads) == 13, heads
        assert found == [without_empty_end([None if cell == "" else cell for cell in row]) for row in rows], found
        values = dict(row[:2] for row in fields["rows"][1:] if len(row) > 1)
        assert values["Study Name"] == "AM" and values["Runs Counted"] == len(rows) - 1, values
        assert values["Avg. Control Delay (s)"] == float(shown["AvgControlDelay"]), values
        assert values["LOS Grade"] == shown["StudyLOSGrade"], values
print("the workbooks hold the figures of the study")
