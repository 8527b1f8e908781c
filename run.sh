#!/usr/bin/env bash
# Builds Vantor and shows it: makes a demo workspace from the sample counter files on the command line, compares its
# two studies, makes a study of a phone's track and the delays of a street with six signals of two more, then opens the
# main window on the first.
#
#   ./run.sh              keeps the workspace of the last time, with all that was changed in it
#   ./run.sh --fresh      makes the workspace anew
#   ./run.sh --no-window  command line only
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
root=$PWD

fresh=0
window=1
for option in "$@"; do
    case $option in
    --fresh) fresh=1 ;;
    --no-window) window=0 ;;
    *)
        echo "usage: ./run.sh [--fresh] [--no-window]" >&2
        exit 2
        ;;
    esac
done

scripts/build.sh release vantor
PATH=$root/build/release/bin:$PATH

workspace=$root/build/demo
study="Study Groups/Main Street NB/AM Peak.ld2"
retimed="Study Groups/Main Street NB/AM Peak retimed.ld2"
complete=$workspace/.complete # written last, so that a workspace that failed half way is made anew
day="Study Groups/Main Street day"
dayComplete=$workspace/.complete-day
corridor="Study Groups/Harbor St.corridor.geojson"
corridorComplete=$workspace/.complete-corridor

# Prints a command as one would type it, then runs it.
show() {
    local word line='$'
    for word in "$@"; do
        [[ $word =~ ^[A-Za-z0-9_./,-]+$ ]] && line+=" $word" || line+=" \"$word\""
    done
    printf '\n%s\n' "$line"
    "$@"
}

# Makes a study from the northbound runs of a counter file; its runs count from a number.
makeStudy() {
    local counterFile="Field Data Files/$1" path=$2 number=$3
    local group=${path%/*} run name names=()
    show vantor counter studies "$counterFile"
    show vantor counter convert "$counterFile" --to Temp

    printf '\nThe runs of study 001 get names of their own and move to a Study Group,\n'
    printf 'as "Process Runs in Temp Folder" does it in the window:\n'
    mkdir -p "$group"
    for run in Temp/S001R*.rd2; do
        printf -v name 'Main St-NB-%03d' $((number + ${#names[@]}))
        show mv "$run" "$group/$name.rd2"
        names+=("$name")
    done

    show vantor study new "$group" "$(basename "$path" .ld2)" "${names[@]}"

    # From before the first signal to past the last one, in feet.
    show vantor study bounds "$path" --all --start-dist 300 --end-dist 7600
    show vantor study compute "$path"
}

# Makes a study from the northbound drives of a phone's track, which are its first, third and fifth.
makeDay() {
    local track="Field Data Files/Corridor day.gpx"
    rm -rf "$day"
    mkdir -p "$day"
    cp "$root/samples/Corridor day.gpx" "$track"
    show vantor track show "$track" --time-zone America/Chicago
    show vantor track convert "$track" --time-zone America/Chicago --to "$day"
    show vantor study new "$day" Northbound "Corridor day-R001" "Corridor day-R003" "Corridor day-R005"
    show vantor study bounds "$day/Northbound.ld2" --all --start-dist 300 --end-dist 7600
}

# A street of six signals, driven before and after a retiming: from two tracks to the table of its delays.
makeCorridor() {
    cp "$root"/samples/Corridor/{before,after}.gpx "$root/samples/Corridor/corridor.csv" "Field Data Files/"
    show vantor corridor new "Study Groups/Harbor St" --nodes "Field Data Files/corridor.csv" --directions NB,SB \
        --ideal-speed 38 --upstream 600 --downstream 450
    show vantor corridor match "$corridor" "Field Data Files/before.gpx" --time-zone America/Detroit | tail -n 9
    show vantor corridor match "$corridor" "Field Data Files/after.gpx" --after --time-zone America/Detroit | tail -n 9
    show vantor corridor studies "$corridor"
}

if ((fresh)) || [[ ! -e $complete ]]; then
    rm -rf "$workspace"
    mkdir -p "$workspace"/{Temp,"Study Groups","Field Data Files"}
    cp samples/{Corridor,Retimed}.tdc "$workspace/Field Data Files/"
fi

# The settings lie in the program folder; with one of its own the demo touches nobody's settings.
export VANTOR_PROGRAM_FOLDER=$workspace
cd "$workspace"
echo "Workspace: $workspace"
show vantor settings show
if [[ ! -e $complete ]]; then
    makeStudy Corridor.tdc "$study" 1
    makeStudy Retimed.tdc "$retimed" 101
    touch "$complete"
fi
show vantor study show "$study"
show vantor study statistics "$study"

printf '\nDid the retiming of the signals work?\n'
show vantor study compare "$study" "$retimed"

printf '\nA morning of drives on the same street, as a phone recorded it:\n'
if [[ ! -e $dayComplete ]]; then
    makeDay
    touch "$dayComplete"
fi
show vantor study show "$day/Northbound.ld2"
printf '\nA run for other programs:\n'
show vantor run export "$day/Corridor day-R001.rd2" --time-zone America/Chicago --output "$day/Corridor day-R001.gpx"

printf '\nA whole street with six signals, before and after a retiming, from two tracks:\n'
if [[ ! -e $corridorComplete ]]; then
    rm -rf "$corridor" "Study Groups/Harbor St"
    makeCorridor
    touch "$corridorComplete"
fi
show vantor corridor results "$corridor"
show vantor corridor compare "$corridor"
show vantor corridor report "$corridor" --output "Study Groups/Harbor St.pdf"
printf '\nThe report is proved from its runs:\n'
show vantor corridor verify "Study Groups/Harbor St.pdf"

if ((!window)); then
    exit 0
elif [[ -n ${DISPLAY-} || -n ${WAYLAND_DISPLAY-} ]]; then
    show vantor "$study"
else
    printf '\nThere is no display here, so the window stays closed.\n'
fi
