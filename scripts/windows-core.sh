#!/usr/bin/env bash
# Compiles the parts without Qt for Windows with the MinGW cross compiler; nothing is run. The build lies in
# build/windows. What is not compiled here is named in docs/windows.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-dependencies.sh --windows
cmake -G Ninja -S packaging/windows -B build/windows -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/packaging/windows/mingw.cmake"
cmake --build build/windows --parallel "$(nproc)"
