#!/usr/bin/env python3
"""Makes a study of the sample runs with the program, exports it in every format and reads each file with a reader that
the program has no part in.

    tests/cli/check_exports.py PROGRAM SAMPLES
"""
import csv
import datetime
import json
import os
import subprocess
import sys
import tempfile

import openpyxl
import xlrd

program, samples = sys.argv[1:]


def vantor(*arguments):
    done = subprocess.run([program, *arguments, "--json"], capture_output=True, text=True, check=True)
    return json.loads(done.stdout)


def expected(entry, folder):
    run = vantor("run", "show", os.path.join(folder, entry["EntryRunName"] + ".rd2"))
    day = datetime.datetime.fromisoformat(run["RunDate"])
    time = datetime.datetime.fromisoformat(run["RunTime"]).time()
    kind = "Primary" if run["HeaderWord1"] == -1 else "Secondary"
    counted = "Counted" if entry["CDStartDist"] and entry["CDEndDist"] else "Not counted"
    return [entry["EntryRunName"], day, time, kind, entry["CDStartDist"], entry["CDEndDist"], entry["IdealSpeedCalc"],
            entry["IdealSpeedUser"], entry["ControlDelay"], entry["LOSGrade"], entry["StopDelay"], counted, "; ".join(entry["warnings"])]


def xls_rows(path):
    book = xlrd.open_workbook(path)

    def value(cell):
        if cell.ctype != xlrd.XL_CELL_DATE:
            return cell.value
        return xlrd.xldate_as_datetime(cell.value, 0) if cell.value >= 1 else \
            datetime.time(*xlrd.xldate_as_tuple(cell.value, 0)[3:])

    sheets = [[[value(cell) for cell in row] for row in sheet.get_rows()] for sheet in book.sheets()]
    return sheets, book.sheet_names()


def xlsx_rows(path):
    book = openpyxl.load_workbook(path)
    assert book.worksheets[0].freeze_panes == "A2", "the heads stay in view"
    sheets = [[["" if value is None else value for value in row] for row in sheet.values] for sheet in book.worksheets]
    return sheets, book.sheetnames


with tempfile.TemporaryDirectory() as folder:
    os.environ["VANTOR_PROGRAM_FOLDER"] = folder
    runs = vantor("counter", "convert", os.path.join(samples, "Corridor.tdc"), "--to", folder)
    study = os.path.join(folder, "AM.ld2")
    vantor("study", "new", folder, "AM", *runs)
    shown = vantor("study", "bounds", study, *runs[:-1], "--start-dist", "300", "--end-dist", "7000")
    rows = [expected(entry, folder) for entry in shown["entries"]]
    assert len(rows) >= 8 and any(row[8] != 0 for row in rows), rows

    for extension, read in ((".xls", xls_rows), (".xlsx", xlsx_rows)):
        output = os.path.join(folder, "AM" + extension)
        assert vantor("study", "export", study, "--output", output) == {"rows": len(rows)}
        (listed, fields), names = read(output)
        assert names == ["Runs", "Study"], names
        assert listed[0][0] == "Run Name" and len(listed[0]) == 13, listed[0]
        for found, wanted in zip(listed[1:], rows, strict=True):
            assert found == wanted, (extension, found, wanted)
        values = {row[0]: row[1] for row in fields[1:]}
        assert values["Study Name"] == "AM" and values["Runs Counted"] == len(rows) - 1, values
        assert values["Avg. Control Delay (s)"] == float(shown["AvgControlDelay"]), values
        assert values["LOS Grade"] == shown["StudyLOSGrade"], values

    output = os.path.join(folder, "AM.csv")
    vantor("study", "export", study, "--output", output)
    with open(output, newline="", encoding="utf-8-sig") as file:
        texts = list(csv.reader(file))[1:]
    assert texts == [[row[0], row[1].strftime("%m/%d/%y"), row[2].strftime("%H:%M"), *map(str, row[3:])]
                     for row in rows], texts
print("the exports hold the figures of the study")
