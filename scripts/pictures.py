#!/usr/bin/env python3
"""Makes the manual's pictures anew: of every screen from the running program, and the drawing of the boundaries.

    scripts/pictures.py [--only NAME] [VANTOR]    the release build where nothing is given

A program folder is filled from samples/ by the program's own commands. For each row of SCREENS the window is started in
it as it was filled, driven by keys to the screen, and photographed into docs/manual/images. The exit status is 1 where
a screen did not come, and its name is printed. Look through the pictures before they are committed.

--only NAME   only the pictures whose names contain that
"""

import argparse
import contextlib
import json
import math
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
from dataclasses import dataclass
from typing import Optional

from boundary_drawing import drawing
from road import in_front, own_display, store_settings, until, xdotool

root = pathlib.Path(__file__).resolve().parent.parent
images = root / "docs/manual/images"
shown = pathlib.Path("/var/local/survey")  # the program folder of all pictures
COLOURS = 128  # as many as windows need; more only make the pictures larger
CARET = 200  # pixels
NORTH, DAY = "Study Groups/Main Street NB", "Study Groups/Main Street day"
PEAK, RETIMED, PHONE = f"{NORTH}/AM Peak.ld2", f"{NORTH}/AM Peak retimed.ld2", f"{DAY}/Northbound.ld2"
TRACK = "Corridor day.gpx"
SURVEYED = 1205244000  # 11 March 2008
STREET = ["alt+a > Corridors - Harbor St"]
MAIN, START, PROFILE, RUNS = ".*- Vantor", "StartUp Options", "Speed Profile", "Process Runs in Temp Folder"


@dataclass
class Screen:
    """`steps` are chords of keys; "KEYS > TITLE" waits for a window, "'TEXT" is typed, "@X,Y" clicks in the window once
    it has its size."""
    picture: str
    steps: list
    study: Optional[str] = PEAK
    size: Optional[tuple] = None  # of the window in the end; as it opens where nothing is said


SCREENS = [
    Screen("start-up", [], None),
    Screen("main-window", [], size=(980, 640)),
    Screen("map", ["@945,207"], PHONE, size=(980, 640)),
    Screen("study-open", ["ctrl+o > Open Existing Study"]),
    Screen("study-save-as", ["ctrl+shift+s > Save Study As"]),
    Screen("run-select", ["alt+a > Add Runs"]),
    Screen("delay-chart", ["alt+p > Control Delays.*", "alt+i", "alt+e", "alt+g"], size=(860, 560)),
    Screen("study-statistics", ["alt+v", "d > Statistics in Detail"], size=(960, 620)),
    Screen("statistics-sections", ["alt+v", "d > Statistics in Detail", "alt+e"], size=(860, 620)),
    Screen("time-space", ["alt+v", "d > Statistics in Detail", "alt+t"], size=(860, 620)),
    Screen("before-after", ["alt+h", "s > Sample.*Vantor", "alt+v", "d > Statistics in Detail", "alt+f"],
           size=(960, 620)),
    Screen("statistics-options", ["alt+v", "s > Statistics Options"]),
    Screen("compare-studies", ["alt+v", "m > Compare Studies", "alt+t > Compare with a Study", f"'{shown}/{RETIMED}",
                               "Return > Compare Studies"], size=(860, 640)),
    Screen("reports", ["ctrl+p > Print Report"], size=(860, 680)),
    Screen("preferences", ["alt+s > Vantor Preferences"], None),
    Screen("speed-profile", [f"alt+w > {PROFILE}"], size=(860, 600)),
    Screen("propose", [f"alt+w > {PROFILE}", "ctrl+b"], size=(860, 600)),
    Screen("use-boundaries", [f"alt+w > {PROFILE}", "ctrl+shift+a > Use Boundaries"]),
    Screen("propose-boundaries", [f"alt+w > {PROFILE}", "ctrl+shift+b > Propose Boundaries"]),
    Screen("run-details", ["alt+e > Run Details"]),
    Screen("sensor-data", ["alt+e > Run Details", "alt+e > Sensor Data.*"], size=(860, 520)),
    Screen("run-file", ["alt+n", "f > Edit Run File"]),
    Screen("run-statistics", ["alt+e > Run Details", "alt+a > Run Statistics"]),
    Screen("node-places", ["alt+n", "l > Nodes for All Runs"]),
    Screen("read-counter", ["alt+f", "r > Read Corvel Board"]),
    Screen("select-counter-file", ["alt+t > Select TDC Data"], None),
    Screen("process-runs", [f"alt+f > {RUNS}", "'Main St"], None, (980, 560)),
    Screen("runs-in-group", [f"alt+f > {RUNS}", "@868,221", "alt+t > Runs in Selected Study Group"], None, (980, 560)),
    Screen("delete-runs", ["alt+u", "Return > Select Temp Runs To Delete"]),
    Screen("delete-counter-files", ["alt+u", "Down", "Return > Select TDC Data Files To Delete"]),
    Screen("import-tracks", ["ctrl+i > Import Tracks", "alt+f > Add Tracks", f"'{TRACK}", "Return > Import Tracks"],
           size=(860, 620)),
    Screen("track-columns", ["ctrl+i > Import Tracks", "alt+f > Add Tracks", "'phone.csv", "Return > Import Tracks",
                             "alt+c > Columns"]),
    Screen("corridor", [*STREET, "alt+l"], None, (1180, 720)),
    Screen("corridor-profiles", [*STREET, "alt+f"], None, (1180, 720)),
    Screen("corridor-time-space", [*STREET, "alt+e"], None, (1180, 720)),
    Screen("corridor-map", [*STREET, "alt+a"], None, (1180, 720)),
    Screen("corridor-before-after", [*STREET, "alt+b"], None, (1180, 720)),
    Screen("corridor-timing", [*STREET, "@60,200", "ctrl+t > .*iming.*"], None),
    Screen("corridor-passes", [*STREET, "alt+i > Import Tracks", "alt+f > Add Tracks", "'day.gpx",
                               "Return > Import Tracks"], None, (980, 640)),
    Screen("select-log", ["alt+b > Select Batelle GPS File"], None),
    Screen("review-log", ["ctrl+i > Import Tracks", "alt+f > Add Tracks", f"'{TRACK}", "Return > Import Tracks",
                          "alt+v > GPS Data"], size=(860, 640)),
]


def commands(program, folder):
    """The studies, as they would be made on the command line."""
    def run(*words):
        return subprocess.run([program, *words], cwd=folder, check=True, capture_output=True, text=True).stdout

    for number, (counter, study) in enumerate([("Corridor.tdc", PEAK), ("Retimed.tdc", RETIMED)]):
        run("counter", "convert", f"Field Data Files/{counter}", "--to", "Temp")
        names = []
        for run_file in sorted((folder / "Temp").glob("S001R*.rd2")):
            names.append(f"Main St-NB-{100 * number + len(names) + 1:03}")
            run_file.rename(folder / NORTH / f"{names[-1]}.rd2")
        make_study(run, study, names)
    run("track", "convert", f"Field Data Files/{TRACK}", "--time-zone", "America/Chicago", "--to", DAY)
    make_corridor(run, folder)
    make_study(run, PHONE, [f"Corridor day-R00{number}" for number in (1, 3, 5)])


def make_corridor(run, folder):
    """A street of six signals with their timings, driven before and after a retiming."""
    made, file = root / "samples/Corridor", folder / "Study Groups/Harbor St.corridor.geojson"
    run("corridor", "new", "Study Groups/Harbor St", "--nodes", made / "corridor.csv", "--directions", "NB,SB",
        "--ideal-speed", "38", "--upstream", "600", "--downstream", "450")
    truth = json.loads((made / "truth.json").read_text(encoding="utf-8"))["corridor"]["nodes"]
    street = json.loads(file.read_text(encoding="utf-8"))
    for node, feature in zip(truth, street["features"]):
        # The cycles divide a day.
        feature["properties"]["timings"] = [
            {"condition": when, "cycleSeconds": timing["cycle"], "greenStartSeconds": timing["offset"] % timing["cycle"],
             "greenSeconds": timing["green"]} for when, timing in node["timing"].items()]
    file.write_text(json.dumps(street), encoding="utf-8")
    for day, after in (("before", []), ("after", ["--after"])):
        run("corridor", "match", file, made / f"{day}.gpx", "--time-zone", "Etc/UTC", *after)
    # The same day in a file that the corridor does not know.
    points = (made / "after.gpx").read_text(encoding="utf-8")
    (folder / "Field Data Files/day.gpx").write_text(points + "\n", encoding="utf-8")


def make_study(run, study, names):
    group, name = study.removesuffix(".ld2").rsplit("/", 1)
    run("study", "new", group, name, *names)
    run("study", "bounds", study, "--all", "--start-dist", "300", "--end-dist", "7600")


def battelle_log():
    """Two short drives, a fix a second."""
    lines = []
    for number in (1, 2):
        lines.append(f"$s,{number}")
        for second in range(200):
            lines.append(f"$G,03/11/08,07:{10 * number + second // 60:02}:{second % 60:02},4004.{4000 + second * 8},"
                         f"9907.2000,{30 + second % 7}.0,0,1,9")
    return "\n".join(lines) + "\n"


def phone_table():
    lines = ["time,lat,lon,speed"]
    lines += [f"2026-03-11T13:{second // 60:02}:{second % 60:02}Z,{40.07 + second * 0.0001:.4f},-99.12,{9 + second % 3}"
              for second in range(300)]
    return "\n".join(lines) + "\n"


def fill(program, folder):
    for name in ("Temp", NORTH, DAY, "Field Data Files"):
        (folder / name).mkdir(parents=True)
    field = folder / "Field Data Files"
    for name in ("Corridor.tdc", "Retimed.tdc", TRACK):
        shutil.copy(root / "samples" / name, field)
        os.utime(field / name, (SURVEYED, SURVEYED))
    for old_run in (root / "samples/Version 1 runs").iterdir():
        shutil.copy(old_run, folder / "Temp")
    (field / "morning.txt").write_text(battelle_log())
    (field / "phone.csv").write_text(phone_table())
    commands(program, folder)


def take_step(step, screen):
    keys, _, title = step.partition(" > ")
    if keys.startswith("'"):
        xdotool("type", "--delay", 8, keys[1:])
    elif keys.startswith("@"):
        fit(screen)
        x, y = keys[1:].split(",")
        xdotool("mousemove", "--window", xdotool("getactivewindow"), x, y, "click", 1)
    else:
        xdotool("key", keys)
    if title:
        wait_for(title)
    time.sleep(0.4)


def wait_for(title):
    until(f"The window {title!r}", lambda: re.fullmatch(title, in_front()))
    time.sleep(0.6)  # its first picture


def fit(screen):
    if screen.size:
        xdotool("windowsize", "--sync", xdotool("getactivewindow"), *screen.size)
        time.sleep(0.5)


def pixels_apart(one, other):
    said = subprocess.run(["compare", "-metric", "AE", one, other, "null:"], capture_output=True, text=True).stderr
    return float(said) if re.fullmatch(r"[0-9.e+]+", said) else math.inf  # of pictures of two sizes it says no number


def photograph(to):
    """A picture that differs from the one that is there by no more than a caret that blinks leaves that as it is."""
    window = xdotool("getactivewindow")
    xdotool("mousemove", 1365, 767)  # points at nothing
    time.sleep(1.0)
    taken = shown / "taken.png"
    seen = subprocess.run(["import", "-window", window, "png:-"], check=True, capture_output=True).stdout
    # A border keeps a white window apart from a white page.
    subprocess.run(["convert", "png:-", "-bordercolor", "#b0b0b0", "-border", "1", "+dither", "-colors", str(COLOURS),
                    "-strip", "-define", "png:compression-level=9", f"png8:{taken}"], input=seen, check=True)
    if not to.exists() or pixels_apart(to, taken) > CARET:
        shutil.copy(taken, to)


@contextlib.contextmanager
def window(program, filled, screen):
    """The program in its folder as that was filled, whatever the screens before did."""
    shutil.rmtree(shown)
    shutil.copytree(filled, shown)
    words = [shown / screen.study] if screen.study else []
    running = subprocess.Popen([program, "--theme", "light", *words], cwd=shown)
    try:
        yield
    finally:
        running.terminate()
        running.wait()


def take(program, filled, screen):
    with window(program, filled, screen):
        wait_for(MAIN if screen.study else START)
        for step in screen.steps:
            take_step(step, screen)
        fit(screen)
        to = images / f"{screen.picture}.png"
        photograph(to)
        print(f"{to.name:28} {to.stat().st_size:7}", flush=True)


def go(program, only, started):
    """Takes the pictures whose names contain `only`; returns the names and reasons of those that did not come."""
    shown.mkdir()
    home = shown / ".home"  # trees do not show it
    home.mkdir(mode=0o700)
    os.environ.update(VANTOR_PROGRAM_FOLDER=f"{shown}/", HOME=str(home), XDG_RUNTIME_DIR=str(home),
                      QT_QPA_PLATFORM="xcb", TZ="America/Chicago")
    fill(program, shown)
    own_display(started)
    store_settings(program, shown, started)
    filled = shutil.copytree(shown, shown.parent / ".filled")
    failed = []
    for screen in [screen for screen in SCREENS if only in screen.picture]:
        try:
            take(program, filled, screen)
        except SystemExit as reason:
            failed.append(f"{screen.picture}: {reason}")
    return failed


def in_a_room_of_its_own():
    """Goes on where the parent of the pictures' folder is empty: trees of folders are to show nothing of a machine."""
    if os.environ.get("VANTOR_PICTURES") != "room":
        os.environ["VANTOR_PICTURES"] = "room"
        os.execvp("unshare", ["unshare", "--map-root-user", "--mount", sys.executable, *sys.argv])
    subprocess.run(["mount", "-t", "tmpfs", "tmpfs", shown.parent], check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--only", metavar="NAME", default="")
    parser.add_argument("program", metavar="VANTOR", nargs="?", default=root / "build/release/bin/vantor")
    options = parser.parse_args()
    subprocess.run([root / "scripts/install-dependencies.sh", "--window"], check=True)
    in_a_room_of_its_own()
    images.mkdir(exist_ok=True)
    (images / "boundaries.svg").write_text(drawing())
    started = []
    try:
        failed = go(pathlib.Path(options.program).resolve(), options.only, started)
    finally:
        for process in reversed(started):
            process.terminate()
            process.wait()
    print("\n".join(failed))
    return bool(failed)


sys.exit(main())
