#!/usr/bin/env python3
"""Lets each call to the system of each storing command fail once and looks at what is left on the disk.

    scripts/fault_rounds.py [VANTOR]    the release build where nothing is given

Each command is run once without a fault, to see what it makes and which calls it does from its first look at the
working folder on. Then it is run anew for every one of these calls, which fails with EIO, and those that write with
ENOSPC, too. Afterwards every file must be the old one or the new one. A command that has not made all of the new files
must end with status 1 and name a file. Exit status 0 when all of this holds."""

import collections
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile

root = pathlib.Path(__file__).resolve().parent.parent
subprocess.run([root / "scripts/install-dependencies.sh", "--faults"], check=True)
program = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else str(root / "build/release/bin/vantor")
READING = "openat,read,pread64,newfstatat,statx,getdents64,lseek,flock"
WRITING = "write,pwrite64,fsync,syncfs,fdatasync,sync_file_range,rename,renameat2,link,unlink,mkdir,fchmodat,close"
NAMED = re.compile(r"/tmp|[.](ld2|rd2|rdf|tdc|mdb|json|bin|ini|xlsx?|csv)\b|(^|/|\b)[gt](/|$)", re.MULTILINE)
COMMANDS = {
    "study new": ("study", "new", "g", "New", "A", "B"),
    "study bounds": ("study", "bounds", "g/AM.ld2", "--all", "--start-dist", "300", "--end-dist", "7600"),
    "study compute": ("study", "compute", "g/AM.ld2", "--stop-speed", "9"),
    "study export .xls": ("study", "export", "g/AM.ld2", "--output", "g/list.xls"),
    "study export .xlsx": ("study", "export", "g/AM.ld2", "--output", "g/list.xlsx"),
    "study export .csv": ("study", "export", "g/AM.ld2", "--output", "g/list.csv"),
    "run smooth": ("run", "smooth", "g/A.rd2", "--factor", "1"),
    "run convert": ("run", "convert", "g/MAINNB01.rdf"),
    "counter convert": ("counter", "convert", "Corridor.tdc", "--to", "t"),
    "log convert": ("log", "convert", "gps.mdb", "--to", "t"),
}


def prepare(folder):
    (folder / "g").mkdir(parents=True)
    (folder / "t").mkdir()
    shutil.copy(root / "samples/Corridor.tdc", folder)
    shutil.copy(root / "tests/data/gps.mdb", folder)
    shutil.copy(root / "samples/Version 1 runs/MAINNB01.rdf", folder / "g")
    os.environ["VANTOR_PROGRAM_FOLDER"] = str(folder)

    def run(*command):
        subprocess.run([program, *command], cwd=folder, check=True, capture_output=True)

    run("counter", "convert", "Corridor.tdc", "--to", "t")
    made = sorted((folder / "t").iterdir())
    made[0].rename(folder / "g/A.rd2")
    made[1].rename(folder / "g/B.rd2")
    for other in made[2:]:
        other.unlink()
    run("study", "new", "g", "AM", "A", "B")
    run("study", "bounds", "g/AM.ld2", "--all", "--start-dist", "500", "--end-dist", "7000")


def comparable(path):
    """What a file holds, without the moment at which it was made."""
    data = path.read_bytes()
    if path.suffix == ".ld2":
        return data[:34] + data[42:]
    if path.suffix == ".xlsx":
        try:
            with zipfile.ZipFile(path) as book:
                return {name: book.read(name) for name in book.namelist() if name != "docProps/core.xml"}
        except zipfile.BadZipFile:
            pass
    return data


def contents(folder):
    """The files that a user sees."""
    return {str(path.relative_to(folder)): comparable(path) for path in folder.rglob("*")
            if path.is_file() and not path.name.startswith(".")}


def traced(folder, command):
    """How often each call is made before the first look at the working folder, and in all."""
    log = folder / ".trace"
    subprocess.run(["strace", "-f", "-o", log, "-e", "trace=" + READING + "," + WRITING, program, *command], cwd=folder,
                   capture_output=True)
    before, total = collections.Counter(), collections.Counter()
    begun = False
    for line in log.read_text(errors="replace").splitlines():
        call = re.match(r"\d+ +([a-z0-9_]+)\(", line)
        if not call:
            continue
        begun = begun or str(folder) in line
        total[call[1]] += 1
        if not begun:
            before[call[1]] += 1
    log.unlink()
    return before, total


def unlike(after, old, new):
    """What is neither the old nor the new file, and whether all is new."""
    hurt = [name for name in old | after if after.get(name) not in (old.get(name), new.get(name))]
    return hurt, all(after.get(name) == data for name, data in new.items())


faults = hurt = silent = 0
with tempfile.TemporaryDirectory() as base:
    for title, command in COMMANDS.items():
        template = pathlib.Path(base) / "template"
        work = pathlib.Path(base) / "work"
        shutil.rmtree(template, ignore_errors=True)
        prepare(template)
        os.environ["VANTOR_PROGRAM_FOLDER"] = str(work)
        old = contents(template)

        def begin():
            shutil.rmtree(work, ignore_errors=True)
            shutil.copytree(template, work)

        begin()
        before, total = traced(work, command)
        new = contents(work)
        for call in total:
            errors = ["EIO"] + (["ENOSPC"] if call in WRITING.split(",") else [])
            for number in range(before[call] + 1, total[call] + 1):
                for error in errors:
                    begin()
                    done = subprocess.run(["strace", "-f", "-o", "/dev/null", "-e", f"trace={call}", "-e",
                                           f"inject={call}:error={error}:when={number}", program, *command],
                                          cwd=work, capture_output=True, text=True, errors="replace")
                    faults += 1
                    wrong, all_new = unlike(contents(work), old, new)
                    place = f"{title}: {call} {number} of {total[call]} ({error}), status {done.returncode}"
                    # An export says of a run that it is unreadable, and the command names it.
                    if wrong and not ("export" in title and done.returncode == 1 and wrong == [command[-1]]):
                        hurt += 1
                        print("HURT", place, wrong, done.stderr.strip()[-200:])
                    elif not all_new and (done.returncode != 1 or not NAMED.search(done.stderr)):
                        silent += 1
                        print("SILENT", place, done.stderr.strip()[-200:])
        print(f"{title}: done, {faults} faults so far")
print(f"{faults} faults: {hurt} with a file that is neither old nor new, {silent} without status 1 and a file's name")
sys.exit(bool(hurt or silent))
