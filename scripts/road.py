#!/usr/bin/env python3
"""Drives the window from a counter file, or from tracks, to the printed report with as few gestures as it takes, and
counts them.

    scripts/road.py [study] [--theme dark] [--keep FOLDER] [--here] [VANTOR]    the release build where nothing is given
    scripts/road.py corridor ...

study       The northbound runs of samples/Corridor.tdc are converted, named and moved into a new Study Group; a study of them gets
            its boundaries in one speed profile, is saved, and its report becomes a PDF.
corridor    The tracks of samples/Corridor, forty runs past six signals both ways before and after a retiming, become the
            table of the delays and its report as PDF.

A gesture is a click, a key chord, or one
text typed into one field. Each is printed with the window it went to, their number and the time at the end. Exit status
0 when study and report came out as they should.

--keep FOLDER   work there and leave all of it, with a picture of every step
--here          use the display that is there; otherwise one of its own that nobody sees
"""

import argparse
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

root = pathlib.Path(__file__).resolve().parent.parent
PATIENCE = 40  # seconds until a step that does not come has failed
RUNS = 8  # northbound
GROUP, STUDY = "Main Street NB", "AM Peak"
STREET = "Harbor St"
IDEAL_NB, IDEAL_SB = (190, 345), (380, 345)
START, END = 300, 7600  # feet: from before the first signal to past the last one
RUNS_SCREEN = "Process Runs in Temp Folder"
# Places that no single key reaches, from the upper left corner of their screens as these first open.
FIRST_RUN, ROW_HEIGHT, GROUP_FIELD = (150, 216), 26, (1000, 474)


def until(what, is_so):
    """Waits until `is_so` yields something, and returns it."""
    end = time.monotonic() + PATIENCE
    while not (found := is_so()):
        if time.monotonic() > end:
            raise SystemExit(f"{what} did not come within {PATIENCE} seconds; the window in front: {in_front()!r}")
        time.sleep(0.05)
    return found


def xdotool(*words):
    return subprocess.run(["xdotool", *map(str, words)], capture_output=True, text=True).stdout.strip()


def in_front():
    return xdotool("getactivewindow", "getwindowname")


class Road:
    """What all roads have: gestures that are counted. `NAME` is said on the command line, `SAMPLES` lie in Field Data
    Files; `travel` goes it, `faults` are what is not as it should be in the files that were made."""

    def __init__(self, folder, pictures):
        self.folder, self.pictures, self.count, self.begin = folder, pictures, 0, time.monotonic()

    def window(self, title):
        """Waits until the window of that title is in front."""
        until(f"The window {title!r}", lambda: re.fullmatch(title, in_front()))
        time.sleep(0.2)  # its first picture

    def files(self, folder, pattern, number):
        until(f"{number} files {folder}/{pattern}",
              lambda: len(list((self.folder / folder).glob(pattern))) == number)
        time.sleep(0.2)  # the list is filled anew

    def gesture(self, what, *words):
        self.count += 1
        print(f"{self.count:3}  {what:45}  {in_front()}", flush=True)
        xdotool(*words)
        time.sleep(0.15)
        if self.pictures:
            subprocess.run(["import", "-window", "root", self.pictures / f"{self.count:02}.png"], check=True)

    def press(self, keys, what):
        self.gesture(f"{keys}: {what}", "key", keys)

    def write(self, text):
        self.gesture(f"type {text!r}", "type", "--delay", 8, text)

    def click(self, place, what, *, extends=False, times=1):
        to = ["mousemove", "--window", xdotool("getactivewindow"), *place]
        with_shift = (["keydown", "shift"], ["keyup", "shift"]) if extends else ([], [])
        self.gesture(f"{'Shift+' if extends else ''}click: {what}", *to, *with_shift[0], "click", "--repeat", times, 1, *with_shift[1])


class StudyRoad(Road):
    NAME, SAMPLES, WHAT = "study", ["Corridor.tdc"], f"study of {RUNS} runs and report"

    def travel(self):
        self.window("StartUp Options")
        self.press("alt+t", "Process TDC Data")
        self.window("Select TDC Data")
        self.press("Return", "Select")
        self.window(RUNS_SCREEN)
        self.name_and_move()
        self.make_study()
        self.set_boundaries()
        self.save_and_print()

    def name_and_move(self):
        self.write("Main St")
        self.click(FIRST_RUN, "first run")
        last = (FIRST_RUN[0], FIRST_RUN[1] + (RUNS - 1) * ROW_HEIGHT)
        self.click(last, "last northbound run", extends=True)
        self.press("alt+r", "Rename")
        self.files("Temp", "Main St-NB-*.rd2", RUNS)
        self.click(GROUP_FIELD, "Current Study Group")
        self.write(GROUP)
        self.press("Return", "make the group")
        self.files("Study Groups", GROUP, 1)
        self.press("alt+m", "Move Runs")
        self.files(f"Study Groups/{GROUP}", "*.rd2", RUNS)
        self.press("alt+o", "OK")

    def make_study(self):
        self.window(r"Vantor\*?")
        self.write(STUDY)

    def set_boundaries(self):
        self.window(".*- Vantor")
        self.press("alt+w", "Show Details")
        self.window("Speed Profile")
        self.press("alt+a", "Start")
        self.write(str(START))
        self.press("alt+e", "End")
        self.write(str(END))
        self.press("ctrl+shift+a", "Use for All Runs")
        self.window("Use Boundaries")
        self.press("Return", "OK")
        self.window("Speed Profile")
        self.press("alt+s", "Save / Exit")

    def save_and_print(self):
        self.window(".*- Vantor")
        self.press("ctrl+s", "Save Study Now")
        self.window("(?!.*- Vantor).*")
        self.press("alt+y", "Yes")
        self.window(f"{STUDY} - Vantor")
        self.press("ctrl+p", "Print Report")
        self.window("Print Report")
        self.press("alt+s", "Save as PDF")
        self.window("Save Report")
        self.press("Return", "Save")
        until("The report", lambda: (self.folder / f"Study Groups/{GROUP}/{STUDY}.pdf").exists())

    def faults(self, program):
        group = self.folder / "Study Groups" / GROUP
        bounds = [(entry["CDStartDist"], entry["CDEndDist"])
                  for entry in asked(program, "study", "show", group / f"{STUDY}.ld2")["entries"]]
        if bounds != [(START, END)] * RUNS:
            yield f"the boundaries are {bounds}"
        yield from pdf_faults(group / f"{STUDY}.pdf")


class CorridorRoad(Road):
    NAME, WHAT = "corridor", "corridor of 40 runs and report"
    SAMPLES = ["Corridor/corridor.csv", "Corridor/before.gpx", "Corridor/after.gpx"]

    def travel(self):
        self.window("StartUp Options")
        self.press("alt+a", "Analyze a Corridor")
        self.window("Corridors - New corridor")
        self.press("alt+v", "Nodes of a File")
        self.window("Nodes of a File")
        self.write(str(self.folder / "Field Data Files/corridor.csv"))
        self.press("Return", "Open")
        self.window("Corridors - New corridor")
        for way in (IDEAL_NB, IDEAL_SB):
            self.click(way, "its ideal speed", times=3)
            self.write("38\t")
        self.press("alt+i", "Import Tracks")
        self.window("Save Corridor")
        self.write(STREET)
        self.press("Return", "OK")
        for track in ("before", "after"):
            self.take(track)
        self.press("ctrl+p", "Report")
        self.window("Print Report")
        self.press("alt+s", "Save as PDF")
        self.window("Save Report")
        self.press("Return", "Save")
        until("The report", lambda: list((self.folder / "Study Groups").glob("**/*.pdf")))

    def take(self, track):
        """The passes of a track; those after the retiming are said to be so."""
        if track == "after":
            self.press("alt+i", "Import Tracks")
        self.window("Import Tracks")
        if track == "after":
            self.press("alt+d", "Driven")
            self.press("Down", "After")
        self.press("alt+f", "Add Files")
        self.window("(?!Import Tracks|Corridors).+")
        self.write(str(self.folder / f"Field Data Files/{track}.gpx"))
        self.press("Return", "Open")
        self.window("Import Tracks")
        time.sleep(1)  # the passes are cut
        self.press("Return", "OK")
        self.window(f"Corridors - {STREET}")
        time.sleep(1)  # its figures

    def faults(self, program):
        results = asked(program, "corridor", "results", self.folder / f"Study Groups/{STREET}.corridor.geojson")
        found = [len(way["runs"]) for way in results["ways"]]
        if found != [20, 20]:
            yield f"the runs of both ways are {found}"
        for way in results["ways"]:
            if any(node["comparison"]["welch"]["n_before"] != 10 for node in way["nodes"]):
                yield f"{way['direction']}: not 10 runs before and 10 after at each node"
        for report in (self.folder / "Study Groups").glob("**/*.pdf"):
            yield from pdf_faults(report)


def asked(program, *words):
    return json.loads(subprocess.run([program, "--json", *words], check=True, capture_output=True, text=True).stdout)


def pdf_faults(report):
    if not report.read_bytes().startswith(b"%PDF"):
        yield f"{report.name} is no PDF"


def own_display(started):
    """A display with a window manager; what was started for it is noted."""
    reads, writes = os.pipe()
    started.append(subprocess.Popen(["Xvfb", "-displayfd", str(writes), "-screen", "0", "1366x768x24"],
                                    pass_fds=[writes], stderr=subprocess.DEVNULL))
    os.close(writes)
    os.environ["DISPLAY"] = ":" + os.fdopen(reads).readline().strip()
    os.environ.pop("WAYLAND_DISPLAY", None)
    started.append(subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
    manager = ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]
    until("The window manager", lambda: b"window id" in subprocess.run(manager, capture_output=True).stdout)


def store_settings(program, folder, started):
    """The first start, which asks for the settings and keeps them as they are proposed."""
    started.append(subprocess.Popen([program], cwd=folder))
    for title in ("Vantor", "Vantor Preferences"):
        until(title, lambda: in_front() == title)
        time.sleep(0.3)
        xdotool("key", "Return")
    until("The screen after the settings", lambda: in_front() == "StartUp Options")
    started[-1].terminate()
    started.pop().wait()


def go(kind, program, folder, options, started):
    for name in ("Temp", "Study Groups", "Field Data Files", "home"):
        (folder / name).mkdir()
    for sample in kind.SAMPLES:
        shutil.copy(root / "samples" / sample, folder / "Field Data Files")
    pictures = folder / "pictures" if options.keep else None
    if pictures:
        pictures.mkdir()
    home = str(folder / "home")
    os.chmod(home, 0o700)
    os.environ.update(VANTOR_PROGRAM_FOLDER=f"{folder}/", HOME=home, XDG_RUNTIME_DIR=home, QT_QPA_PLATFORM="xcb")
    if not options.here:
        own_display(started)
    store_settings(program, folder, started)
    theme = ["--theme", options.theme] if options.theme else []
    started.append(subprocess.Popen([program, *theme], cwd=folder))
    road = kind(folder, pictures)
    road.travel()
    print(f"{road.count} gestures, {time.monotonic() - road.begin:.1f} s")
    found = list(road.faults(program))
    print("\n".join(found) or f"{kind.WHAT}: as they should be")
    return bool(found)


ROADS = {road.NAME: road for road in (StudyRoad, CorridorRoad)}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--theme", choices=["light", "dark"])
    parser.add_argument("--keep", metavar="FOLDER", type=pathlib.Path)
    parser.add_argument("--here", action="store_true")
    parser.add_argument("road", nargs="?", choices=list(ROADS), default="study")
    parser.add_argument("program", metavar="VANTOR", nargs="?", default=root / "build/release/bin/vantor")
    options = parser.parse_args()
    if options.keep and options.keep.exists() and any(options.keep.iterdir()):
        parser.error(f"{options.keep} is not empty: the folder to keep is made anew")
    subprocess.run([root / "scripts/install-dependencies.sh", "--window"], check=True)
    started = []
    with tempfile.TemporaryDirectory() as temporary:
        folder = (options.keep or pathlib.Path(temporary)).resolve()
        folder.mkdir(parents=True, exist_ok=True)
        try:
            return go(ROADS[options.road], pathlib.Path(options.program).resolve(), folder, options, started)
        finally:
            for process in reversed(started):
                process.terminate()
                process.wait()


if __name__ == "__main__":
    sys.exit(main())
