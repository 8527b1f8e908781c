#!/usr/bin/env python3
"""Drives the window from a counter file to the printed report with as few gestures as it takes, and counts them.

    scripts/road.py [--theme dark] [--keep FOLDER] [--here] [VANTOR]    the release build where nothing is given

The northbound runs of samples/Corridor.tdc are converted, named and moved into a new Study Group; a study of them gets
its boundaries in one speed profile, is saved, and its report becomes a PDF. A gesture is a click, a key chord, or one
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
PATIENCE = 20  # seconds until a step that does not come has failed
RUNS = 8  # northbound
GROUP, STUDY = "Main Street NB", "AM Peak"
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

    def click(self, place, what, *, extends=False):
        to = ["mousemove", "--window", xdotool("getactivewindow"), *place]
        with_shift = (["keydown", "shift"], ["keyup", "shift"]) if extends else ([], [])
        self.gesture(f"{'Shift+' if extends else ''}click: {what}", *to, *with_shift[0], "click", 1, *with_shift[1])

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


def faults(program, folder):
    """What is not as it should be in the files that were made."""
    group = folder / "Study Groups" / GROUP
    shown = json.loads(subprocess.run([program, "--json", "study", "show", group / f"{STUDY}.ld2"], check=True,
                                      capture_output=True, text=True).stdout)
    bounds = [(entry["CDStartDist"], entry["CDEndDist"]) for entry in shown["entries"]]
    if bounds != [(START, END)] * RUNS:
        yield f"the boundaries are {bounds}"
    if not (group / f"{STUDY}.pdf").read_bytes().startswith(b"%PDF"):
        yield "the report is no PDF"


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


def go(program, folder, options, started):
    for name in ("Temp", "Study Groups", "Field Data Files", "home"):
        (folder / name).mkdir()
    shutil.copy(root / "samples/Corridor.tdc", folder / "Field Data Files")
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
    road = Road(folder, pictures)
    road.travel()
    print(f"{road.count} gestures, {time.monotonic() - road.begin:.1f} s")
    found = list(faults(program, folder))
    print("\n".join(found) or f"study of {RUNS} runs and report: as they should be")
    return bool(found)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--theme", choices=["light", "dark"])
    parser.add_argument("--keep", metavar="FOLDER", type=pathlib.Path)
    parser.add_argument("--here", action="store_true")
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
            return go(pathlib.Path(options.program).resolve(), folder, options, started)
        finally:
            for process in reversed(started):
                process.terminate()
                process.wait()


if __name__ == "__main__":
    sys.exit(main())
