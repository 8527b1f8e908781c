#!/usr/bin/env bash
# What takes too long for every change: each part in turn, and one table of what came of it.
#
#   scripts/deep.sh                 all parts
#   scripts/deep.sh PART...         sanitize threads clang fuzz kill mutants coverage tidy share
#
#   DEEP_SECONDS  of each fuzzer (60)     DEEP_ROUNDS  of kills (100)
#   DEEP_FAULTS   planted (60)            DEEP_SEED    of the planted faults (today's date)
#
# Each part's output lies in build/deep/PART.log. Exit status 0 only when every part is well.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seed=${DEEP_SEED:-$(date +%Y%m%d)}
mkdir -p build/deep
export QT_QPA_PLATFORM=offscreen

# All test programs with addresses and undefined behaviour watched. What Qt and the font library keep for the life of a
# program is no leak of this one's.
sanitize() {
    scripts/build.sh sanitize
    ASAN_OPTIONS=detect_leaks=0 ctest --preset sanitize --parallel "$(nproc)"
}

# Long work is the only thing that crosses threads. Qt itself is not built for this, so what it does alone is passed over.
threads() {
    scripts/build.sh threads core_forms_tests
    printf 'called_from_lib:libQt6Core.so\ncalled_from_lib:libQt6Gui.so\ncalled_from_lib:libQt6Widgets.so\n' \
        >build/deep/threads.supp
    TSAN_OPTIONS="suppressions=$PWD/build/deep/threads.supp halt_on_error=1" \
        build/threads/bin/core_forms_tests --gtest_filter='Job*'
}

clang() { scripts/build.sh clang; }
fuzz() { scripts/fuzz.sh "${DEEP_SECONDS:-60}"; }
kill_() { scripts/kill-rounds.sh "${DEEP_ROUNDS:-100}"; }
mutants() { scripts/mutants.sh --seed "$seed" --count "${DEEP_FAULTS:-60}" --out build/deep/mutants.jsonl; }
coverage() { scripts/coverage.sh; }
tidy() {
    rm -rf build/check/tidy
    scripts/check.sh
}
share() { python3 -B scripts/test_share.py --most 50; }

if [[ ${1-} == --part ]]; then
    "$2"
    exit
fi
parts=("$@")
((${#parts[@]})) || parts=(sanitize threads clang fuzz kill mutants coverage tidy share)
failed=0
table=$(printf '%-10s%-8s%9s  %s' part result seconds "last line")
for part in "${parts[@]}"; do
    run=$part
    [[ $part != kill ]] || run=kill_
    declare -F "$run" >/dev/null || { echo "no part $part" >&2; exit 2; }
    log=build/deep/$part.log
    begin=$SECONDS
    result=well
    # In a shell of its own, so that a part ends at its first fault.
    if ! scripts/deep.sh --part "$run" >"$log" 2>&1; then
        result=FAILED
        failed=1
    fi
    table+=$'\n'$(printf '%-10s%-8s%9d  %s' "$part" "$result" $((SECONDS - begin)) "$(tail -n 1 "$log")")
    echo "$part: $result, see $log"
done
echo "$table"
exit $failed
