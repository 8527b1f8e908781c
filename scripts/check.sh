#!/usr/bin/env bash
# Checks the sources without running them: format, house rules, samples, clang-tidy. Exit status 0 when all are clean.
#
#   scripts/check.sh          all four
#   scripts/check.sh --fix    brings the format in order first
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-dependencies.sh

folders=()
for folder in src tests bench fuzz; do
    [[ ! -d $folder ]] || folders+=("$folder")
done

# Few files for each clang-format, so that every core is busy.
formatSources() {
    find "${folders[@]}" \( -name '*.h' -o -name '*.cpp' \) -print0 |
        xargs -0 --no-run-if-empty -P "$(nproc)" -n 20 clang-format "$@"
}

# clang reads no precompiled header of g++, so clang-tidy gets a tree of its own that is only configured.
checkWithClangTidy() {
    mkdir -p build/check
    if ! cmake --preset release -B build/check -DVANTOR_PCH=OFF -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
        >build/check/configure.log 2>&1; then
        cat build/check/configure.log
        return 1
    fi
    python3 -B scripts/check_tidy.py build/check
}

# The samples hold what their scripts make, byte for byte.
checkSamples() {
    local made status=0
    made=$(mktemp -d)
    python3 -B samples/make_samples.py "$made" && python3 -B scripts/make_corridor.py "$made/Corridor" &&
        diff -rq --exclude='*.py' --exclude=README.md --exclude=__pycache__ "$made" samples || status=1
    rm -rf "$made"
    return $status
}

case "${1-}" in
"") ;;
--fix) formatSources -i ;;
*)
    echo "usage: ${0##*/} [--fix]" >&2
    exit 2
    ;;
esac

failed=()
check() {
    local name=$1
    shift
    if "$@"; then
        echo "$name: ok"
    else
        echo "$name: FAILED"
        failed+=("$name")
    fi
}

check "format (scripts/check.sh --fix)" formatSources --dry-run --Werror
check "self-test of the house rules" python3 -B scripts/check_house.py --self-test
check "house rules" python3 -B scripts/check_house.py
check "samples" checkSamples
check "clang-tidy" checkWithClangTidy
((${#failed[@]} == 0))
