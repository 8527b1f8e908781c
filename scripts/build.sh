#!/usr/bin/env bash
# Installs what building needs and builds: scripts/build.sh PRESET [TARGET...], all targets by default.
# The result lies in build/PRESET.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if (($# == 0)); then
    echo "usage: ${0##*/} PRESET [TARGET...]" >&2
    exit 2
fi
preset=$1
shift

scripts/install-dependencies.sh --build

# A change of CMakeLists.txt configures by itself, a change of the presets does not.
[[ build/$preset/build.ninja -nt CMakePresets.json ]] || cmake --preset "$preset"
cmake --build "build/$preset" --parallel "$(nproc)" --target "${@:-all}"
