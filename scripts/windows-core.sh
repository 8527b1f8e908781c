#!/usr/bin/env bash
# Compiles the parts without Qt for Windows with the MinGW cross compiler, runs their tests under Wine and compares the
# run files that it makes of a counter file there with those made here. The build lies in build/windows. What is not
# compiled here is named in docs/windows.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-dependencies.sh --windows
cmake -G Ninja -S packaging/windows -B build/windows -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/packaging/windows/mingw.cmake"
cmake --build build/windows --parallel "$(nproc)"
ctest --test-dir build/windows --output-on-failure

scripts/build.sh release vantor
made=build/windows/runs
rm -rf "$made"
mkdir -p "$made/here" "$made/there"
VANTOR_PROGRAM_FOLDER=$PWD/$made build/release/bin/vantor counter convert samples/Corridor.tdc --to "$made/here" >/dev/null
(cd "$made" && WINEDEBUG=-all wine ../bin/convert_counter_file.exe "..\\..\\..\\samples\\Corridor.tdc" "there\\" >/dev/null)
diff -r "$made/here" "$made/there"
echo "$(ls "$made/there" | wc -l) run files are the same, byte for byte."
