#!/usr/bin/env bash
# Feeds every reader with damaged files under the address and undefined behaviour sanitizers.
#
#   scripts/fuzz.sh [SECONDS [READER...]]   each reader (settings, run, ...) for that long, 600 seconds by default
#
# Seeds are made from samples/; what was found to reach new code is kept in build/fuzz/corpus/ for the next time. Exit
# status 0 only when no reader has a finding; a finding's input lies in build/fuzz/findings/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=${1:-600}
shift || true

scripts/install-dependencies.sh --fuzz
scripts/build.sh release vantor
cmake --preset fuzz >build/fuzz-configure.log 2>&1 || { cat build/fuzz-configure.log; exit 1; }
cmake --build --preset fuzz

corpus=build/fuzz/corpus
findings=build/fuzz/findings
seeds=build/fuzz/seeds
rm -rf "$seeds"
mkdir -p "$findings" "$seeds"/{settings,run,ver1run,study,counter,workspace}

head -c 20000 samples/Corridor.tdc >"$seeds/counter/corridor.tdc"
cp "samples/Version 1 runs"/*.[rR][dD][fF] "$seeds/ver1run/"
export VANTOR_PROGRAM_FOLDER=$PWD/$seeds/workspace
build/release/bin/vantor counter convert samples/Corridor.tdc --to "$seeds/workspace" >/dev/null
find "$seeds/workspace" -name '*.rd2' | sort | head -3 | xargs -I{} cp {} "$seeds/run/"
build/release/bin/vantor study new "$seeds/workspace" Seed $(basename -a -s .rd2 "$seeds/run"/*.rd2) >/dev/null
cp "$seeds/workspace/Seed.ld2" "$seeds/study/"
head -c 1024 /dev/zero >"$seeds/settings/VANTOR.bin"

failed=()
for fuzzer in build/fuzz/bin/*_fuzz; do
    reader=$(basename "$fuzzer" _fuzz)
    (($# == 0)) || [[ " $* " == *" $reader "* ]] || continue
    mkdir -p "$corpus/$reader" "$seeds/$reader"
    log=build/fuzz/$reader.log
    if "$fuzzer" -max_total_time="$seconds" -rss_limit_mb=4096 -timeout=20 -max_len=65536 -print_final_stats=1 \
        -artifact_prefix="$findings/$reader-" "$corpus/$reader" "$seeds/$reader" >"$log" 2>&1; then
        echo "$reader: no finding in $(grep -oP 'number_of_executed_units:\s+\K\d+' "$log") inputs"
    else
        echo "$reader: FINDING, see $log"
        failed+=("$reader")
    fi
done
((${#failed[@]} == 0))
