#!/usr/bin/env python3
"""Runs clang-tidy over the sources under src, in parallel.

    scripts/check_tidy.py BUILD_FOLDER     the folder that holds compile_commands.json

A source that was clean is not looked at again until it, a header of the project that it includes, its
compiler command or .clang-tidy changes; the stamps lie in BUILD_FOLDER/tidy.
"""

import hashlib
import json
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from check_house import include_graph, is_cpp, reachable, read_files

ROOT = Path(__file__).resolve().parent.parent


def stamp_name(path, command, files, graph, common):
    digest = hashlib.sha256(common + command.encode())
    for part in (path, *sorted(reachable(path, graph))):
        digest.update(f"\0{part}\0{files[part]}".encode())
    return digest.hexdigest()


def check(build, path):
    # Warnings are the business of the compiler that builds; clang may not know all of its options.
    quiet = ("--quiet", "--extra-arg=-w", "--extra-arg=-Wno-unknown-warning-option")
    result = subprocess.run(["clang-tidy", *quiet, "-p", build, path], cwd=ROOT, capture_output=True, text=True)
    return result.returncode, result.stdout + (result.stderr if not result.stdout else "")


def main(arguments):
    if len(arguments) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    build = Path(arguments[0]).resolve()
    stamps = build / "tidy"
    stamps.mkdir(exist_ok=True)

    files = {path: text for path, text in read_files(ROOT).items() if is_cpp(path)}
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    common = version + (ROOT / ".clang-tidy").read_bytes()

    graph = include_graph(files)

    commands = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = os.path.relpath(Path(entry["directory"], entry["file"]).resolve(), ROOT)
        if path.startswith("src/") and path in files:
            commands[path] = entry["command"]
    if not commands:
        print(f"{build}/compile_commands.json has no source of src/")
        return 1
    stamp_of = {
        path: stamps / stamp_name(path, command, files, graph, common) for path, command in commands.items()
    }
    waiting = {path: stamp for path, stamp in stamp_of.items() if not stamp.exists()}

    failed = 0
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for stamp, (status, text) in zip(waiting.values(), pool.map(lambda path: check(build, path), waiting)):
            if status == 0:
                stamp.touch()
            else:
                failed += 1
                print(text, flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
