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
mkdir -p "$findings" "$seeds"/{settings,run,ver1run,study,corridor,counter,workspace,laptoplog,battelle,palm,gpx,nmea,csv,mdb}

head -c 20000 samples/Corridor.tdc >"$seeds/counter/corridor.tdc"
cp "samples/Version 1 runs"/*.[rR][dD][fF] "$seeds/ver1run/"
export VANTOR_PROGRAM_FOLDER=$PWD/$seeds/workspace
build/release/bin/vantor counter convert samples/Corridor.tdc --to "$seeds/workspace" >/dev/null
find "$seeds/workspace" -name '*.rd2' | sort | head -3 | xargs -I{} cp {} "$seeds/run/"
build/release/bin/vantor study new "$seeds/workspace" Seed $(basename -a -s .rd2 "$seeds/run"/*.rd2) >/dev/null
cp "$seeds/workspace/Seed.ld2" "$seeds/study/"
head -c 1024 /dev/zero >"$seeds/settings/VANTOR.bin"
printf '$s,1\r\n$G,05/14/03,12:00:0%s,4230.5000,8330.2500,31.5,90.0,1.2,7\r\n' 1 2 3 >"$seeds/battelle/loop.txt"
# The start of each drive of the model, and a little of what it does not write.
scripts/make_tracks.py "$seeds/tracks" 1
for kind in gpx nmea csv; do
    head -n 33 "$seeds/tracks/clean-1.$kind" >"$seeds/$kind/clean.$kind"
done
printf '</trkseg></trk></gpx>' >>"$seeds/gpx/clean.gpx"
printf '$GPRMC,120000,V,,,,,,,010126\n$GNZDA,120000,01,01,2026\n$GPVTG,90,T,,M,10,N\n' >"$seeds/nmea/void.nmea"
printf 'Date,Time,Lat,Long,Speed (mph),Mark\n13/04/26,12:00:00 PM,42.5N,83.25W,20,x\n' >"$seeds/csv/day.csv"
cp tests/data/*.mdb "$seeds/mdb/"
sed -n '/^    {"type":"FeatureCollection"/,/}]}}$/p' docs/formats.md >"$seeds/corridor/main.geojson"
printf 'name;lat;lon;control\nOak;42,33;-83,05;stop\nElm;42,34;-83,05;\n' >"$seeds/corridor/nodes.csv"
# A container of two records: the header, their entries, nine texts each.
record='05/14/2003 22:00:17\00042.5\00083.5\00012\00090\0001.5\0007\0001\0002\000'  # 46 bytes
{
    printf 'GPSData'; head -c 69 /dev/zero; printf '\0\2'
    printf '\0\0\0\136\0\0\0\1\0\0\0\214\0\0\0\2'; printf "$record$record"
} >"$seeds/palm/gps.pdb"
# A GPS log of each format, an OBD log and a combined one, each with points of runs 0, 1 and 2.
python3 -B - "$seeds/laptoplog" <<'EOF'
import struct
import sys

DAY = 37755.5
prefix = {number: struct.pack("<hhhd2s", number, 0, 0, DAY, b"XX") for number in (1, 2)}
gps_header = struct.pack("<32s20s32shhih6s", b"Main St".ljust(32), b"Main".ljust(20), b" " * 32, 1, 4, 4800, 0, b"")
obd_header = struct.pack("<32s20s32shhihh24s", b"Main St".ljust(32), b"Main".ljust(20), b" " * 32, 1, 3, 38400, 0, 9, b"")
times = [(run, DAY + second / 86400) for run in range(3) for second in range(4)]
gps = [struct.pack("<hhffdddhfhhh", r, 1, 31.5, 90, t, 42.5, 83.5, 7, 1.5, 0, 0, 2) for r, t in times]
first = [struct.pack("<hhfdddhfhhfffh", r, 1, 31.5, t, 4230, 8330, 7, 1.5, 0, 0, 250, -34, 1, 12) for r, t in times]
obd = [struct.pack("<hd8fhhh16s16s16s", r, t, *[31.5] * 8, 0, 0, 2, b"P0420", b"", b"") for r, t in times]
combined = [a + b for a, b in zip(gps, obd)]
for name, start, records in (
    ("trip.gdf", prefix[1] + gps_header, first),
    ("trip.gd2", prefix[2] + gps_header, gps),
    ("trip.od2", prefix[2] + obd_header, obd),
    ("trip.ddf", prefix[2] + obd_header, combined),
):
    with open(sys.argv[1] + "/" + name, "wb") as file:
        file.write(start + b"".join(records))
EOF

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
