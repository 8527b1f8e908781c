#!/usr/bin/env bash
# Makes days in a corridor with known truth, has the program match them, and judges what it says; prints the table of
# docs/accuracy.md.
#
#   scripts/accuracy.sh SEED...           a day of tracks before and after a retiming, and the counter's runs of it
#   scripts/accuracy.sh --cases SEED...   the hard cases too
#   VANTOR=build/asan/bin/vantor scripts/accuracy.sh SEED
#
# Exit status 0 when all days of the plain corridor meet the demands of judge_corridor.py. Of what fails, the report and
# the program's answer stay in build/accuracy.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
vantor=$PWD/${VANTOR:-build/release/bin/vantor}
made=$PWD/build/accuracy
judge=(python3 -B "$PWD/scripts/judge_corridor.py")

# All that is asked of the program. In the folder of a day: before.gpx, after.gpx, before.tdc, after.tdc, corridor.csv.
newCorridor() {
    "$vantor" corridor new "$1" --nodes corridor.csv --directions NB,SB --ideal-speed 38 --upstream 600 \
        --downstream 450
}
matchTracks() {
    newCorridor "Harbor St" >new.txt
    "$vantor" corridor match "Harbor St.corridor.geojson" before.gpx --time-zone UTC >match.txt
    "$vantor" corridor match "Harbor St.corridor.geojson" after.gpx --after --time-zone UTC --json
}
matchCounter() {
    newCorridor "Harbor St, counter" >new.txt
    "$vantor" counter convert before.tdc --to Temp >convert.txt
    "$vantor" counter convert after.tdc --to Temp >>convert.txt
    "$vantor" corridor match "Harbor St, counter.corridor.geojson" Temp/*.rd2 --json
}

cases=(plain)
if [[ ${1-} == --cases ]]; then
    cases+=(loop side-trip u-turn parallel part middle missing offset 5hz 0.2hz marks-late marks-twice calibrations)
    shift
fi
if (($# == 0)); then
    echo "usage: ${0##*/} [--cases] SEED..." >&2
    exit 2
fi

failed=0
table=()

# Asks the program and adds a row: name, what is asked, the option of the judge.
judge() {
    local name=$1 ask=$2 option=${3-} row report
    if ! "$ask" >"$ask.json" 2>"$ask.txt"; then
        echo "$name: the program failed:" >&2
        cat "$ask.txt" >&2
        return 1
    fi
    report=0
    "${judge[@]}" truth.json "$ask.json" ${option:+"$option"} >"$ask-report.txt" || report=1
    row=$("${judge[@]}" truth.json "$ask.json" ${option:+"$option"} --row "$name") || true
    table+=("$row")
    return $report
}

for seed in "$@"; do
    for case in "${cases[@]}"; do
        day=$made/$seed-$case
        rm -rf "$day"
        option=()
        [[ $case == plain ]] || option=(--case "$case")
        python3 -B scripts/make_corridor.py "$day" "$seed" "${option[@]}"
        mkdir -p "$day"/{"Study Groups",Temp,"Field Data Files"}
        cd "$day"
        export VANTOR_PROGRAM_FOLDER=$day/
        good=1
        case $case in
        marks-* | calibrations) judge "seed $seed, $case" matchCounter --counter || good=0 ;;
        plain)
            judge "seed $seed" matchTracks || good=0
            judge "seed $seed, counter" matchCounter --counter || good=0
            ;;
        *) judge "seed $seed, $case" matchTracks || good=0 ;;
        esac
        cd ../../..
        if ((good)); then
            rm -rf "$day"
        elif [[ $case == plain ]]; then
            failed=1
        fi
    done
done

"${judge[@]}" --head
printf '%s\n' "${table[@]}"
exit $failed
