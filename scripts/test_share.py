#!/usr/bin/env python3
"""Tells how many lines the tests have for a hundred lines of the program: lines of C++ and Python and of expected values,
without blank lines and comments.

    scripts/test_share.py [--most PERCENT]    exit status 1 when there are more
"""

import argparse
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)
DOCSTRING = re.compile(r'^\s*""".*?"""', re.DOTALL | re.MULTILINE)


def lines_of(path):
    if path.name == "CMakeLists.txt" or path.suffix not in (".cpp", ".h", ".py", ".json", ".txt"):
        return 0
    text = path.read_text(errors="replace")
    comment = {".cpp": "//", ".h": "//", ".py": "#"}.get(path.suffix)
    if path.suffix in (".cpp", ".h"):
        text = COMMENT.sub("", text)
    if path.suffix == ".py":
        text = DOCSTRING.sub("", text)
    lines = (line.strip() for line in text.split("\n"))
    return sum(1 for line in lines if line and not (comment and line.startswith(comment)))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--most", type=float, default=float("inf"))
    most = parser.parse_args().most
    counts = {}
    for top in ("src", "tests"):
        for path in (ROOT / top).rglob("*"):
            if path.is_file():
                folder = path.relative_to(ROOT / top).parts[0]
                counts.setdefault(folder, {"src": 0, "tests": 0})[top] += lines_of(path)
    for folder, count in sorted(counts.items()):
        if count["src"] + count["tests"]:
            print(f"{folder:12}{count['src']:8}{count['tests']:8}")
    source, tests = (sum(count[top] for count in counts.values()) for top in ("src", "tests"))
    share = 100 * tests / source
    print(f"{'all':12}{source:8}{tests:8}   {share:.1f} lines of tests for 100 of the program")
    return 1 if share > most else 0


if __name__ == "__main__":
    sys.exit(main())
