#!/usr/bin/env python3
"""Plants small faults in the sources, one after the other, and tells which of them the tests do not see.

    scripts/mutants.sh [--seed N] [--count N] [--only TEXT] [--out FILE]
    scripts/mutants.sh --replay FILE [--out FILE]

Takes `count` places (60) of the .cpp files of rules and screens whose path holds TEXT, picked by the seed (1). Each
fault is one comparison, logical operator, sign, constant or statement. The test programs of the file's own folder, and
for a screen the one of all screens, are built and run; a fault that does not build is left out. All happens in a copy
under build/mutants: the sources here are not touched. FILE gets a line a fault, as JSON, which --replay plants again at
the same places: the sources must be the same then, the tests may be others. Prints what survives; exit status 0 when
every fault was planted and every test program passed before."""

import argparse
import json
import os
import random
import re
import shutil
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TREE = ROOT / "build/mutants/tree"
BUILD = ROOT / "build/mutants/build"
LONGEST_RUN = 120  # seconds of a test program; one that takes longer has seen the fault
SKIPPED_FOLDERS = ("platform", "app", "ports")  # what a test cannot reach without the outside

# Strings, characters and comments are no place for a fault, and neither are lines of the preprocessor.
HIDDEN = re.compile(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*', re.DOTALL | re.MULTILINE)
SWAPS = {
    "comparison": {" < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ", " == ": " != ", " != ": " == "},
    "logic": {" && ": " || ", " || ": " && "},
    "sign": {" + ": " - ", " - ": " + ", " += ": " -= ", " -= ": " += "},
    "truth": {"true": "false", "false": "true"},
}
NUMBER = re.compile(r"(?<![\w.])(\d+)(?![\w.'])")
NEGATION = re.compile(r"(?<=[(\s])!(?=[\w(])")
STATEMENT = re.compile(r"^( {4,})(?!return|throw|case|break|continue|using|const|static|auto|else|if|for)"
                       r"(?:[\w.\[\]]|->|::)+(?:\(.*\)| [-+*/|&]?= [^{};]*);$", re.MULTILINE)


def candidates(path, text):
    """(line, column, kind, old, new) of every place for a fault; both count from 1."""
    hidden = [match.span() for match in HIDDEN.finditer(text)]

    def add(kind, start, old, new):
        if not any(begin < start + len(old) and start < end for begin, end in hidden):
            line = text.count("\n", 0, start) + 1
            found.append((line, start - text.rfind("\n", 0, start), kind, old, new))

    found = []
    for kind, swaps in SWAPS.items():
        for old, new in swaps.items():
            pattern = re.escape(old) if old.startswith(" ") else rf"\b{old}\b"
            for match in re.finditer(pattern, text):
                add(kind, match.start(), old, new)
    for match in NUMBER.finditer(text):
        add("constant", match.start(), match[1], str(int(match[1]) + 1))
    for match in NEGATION.finditer(text):
        add("negation", match.start(), "!", "")
    for match in STATEMENT.finditer(text):
        start = match.start() + len(match[1])
        add("statement", start, match[0].strip(), ";")
    return [(path, *place) for place in found]


def sources(only):
    for path in sorted((ROOT / "src").rglob("*.cpp")):
        name = path.relative_to(ROOT).as_posix()
        if only in name and not set(SKIPPED_FOLDERS) & set(path.relative_to(ROOT / "src").parts):
            yield name


def programs_of(path):
    """The test programs of the folder that a source lies in: those of its rules, and those of its screens alone, with
    the one of all screens, for a screen."""
    parts = Path(path).parts
    listed = (ROOT / "tests" / parts[1] / "CMakeLists.txt").read_text()
    programs = re.findall(r"^vantor_test\((\w+)( FORMS)?", listed, re.MULTILINE)
    is_screen = "forms" in parts
    own = [name for name, forms in programs if forms or not is_screen]
    return [*own, "screen_tests"] if is_screen else own


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, **options)


def prepare():
    TREE.mkdir(parents=True, exist_ok=True)
    listed = run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True).stdout.split("\n")
    kept = {name for name in listed if name and (ROOT / name).exists()}
    for old in TREE.rglob("*"):
        if old.is_file() and old.relative_to(TREE).as_posix() not in kept:
            old.unlink()
    for name in kept:
        target = TREE / name
        if not target.exists() or target.read_bytes() != (ROOT / name).read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, target)
    run(["cmake", "-G", "Ninja", "-S", TREE, "-B", BUILD, "-DCMAKE_BUILD_TYPE="], check=True)


def passes(program):
    """True when a test program finds no fault. The texts of screens are those of the size that ctest gives."""
    platform = "offscreen"
    only = []
    if program == "screen_tests":
        platform += f":configfile={BUILD}/tests/app/screen-desktop_100.json"
        only = ["--gtest_filter=-*ScreenLayoutTest*"]
    environment = {**os.environ, "QT_QPA_PLATFORM": platform}
    try:
        return run([BUILD / "bin" / program, *only], env=environment, timeout=LONGEST_RUN).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def unsound(programs):
    """The test programs that do not build or that find a fault where none was planted."""
    run(["cmake", "--build", BUILD, "--target", *programs])
    return [program for program in programs if not (BUILD / "bin" / program).exists() or not passes(program)]


def verdict(mutant):
    path, line, column, _, old, new = mutant
    target = TREE / path
    sound = target.read_text()
    start = sum(len(each) + 1 for each in sound.split("\n")[: line - 1]) + column - 1
    if sound[start : start + len(old)] != old:
        return "not there"
    programs = programs_of(path)
    target.write_text(sound[:start] + new + sound[start + len(old) :])
    try:
        if run(["cmake", "--build", BUILD, "--target", *programs]).returncode != 0:
            return "does not build"
        if not all(passes(program) for program in programs):
            return "seen"
        return "survives"
    finally:
        target.write_text(sound)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=60)
    parser.add_argument("--only", default="")
    parser.add_argument("--replay", type=Path)
    parser.add_argument("--out", type=Path)
    arguments = parser.parse_args()

    if arguments.replay:
        mutants = [tuple(json.loads(line)["fault"]) for line in arguments.replay.read_text().splitlines()]
    else:
        places = [place for path in sources(arguments.only) for place in candidates(path, (ROOT / path).read_text())]
        mutants = random.Random(arguments.seed).sample(places, min(arguments.count, len(places)))
        print(f"seed {arguments.seed}: {len(mutants)} of {len(places)} places", flush=True)
    prepare()
    programs = sorted({program for path, *_ in mutants for program in programs_of(path)})
    if failing := unsound(programs):
        print(f"without a fault planted: {', '.join(failing)} failed")
        return 1
    counts = {}
    with open(arguments.out or os.devnull, "w") as out:
        for mutant in sorted(mutants):
            result = verdict(mutant)
            counts[result] = counts.get(result, 0) + 1
            print(json.dumps({"fault": mutant, "verdict": result}), file=out, flush=True)
            if result in ("survives", "not there"):
                path, line, _, kind, old, new = mutant
                print(f"{result}: {path}:{line}: {kind}: {old.strip()} -> {new.strip() or 'nothing'}", flush=True)
    print(", ".join(f"{count} {result}" for result, count in sorted(counts.items())))
    return 1 if "not there" in counts else 0


if __name__ == "__main__":
    sys.exit(main())
