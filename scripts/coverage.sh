#!/usr/bin/env bash
# Measures how many lines of the rules the tests run, built in build/coverage: the lines of each folder by the tests of
# that folder alone, so that a line only counts where it is also looked at. Exit status 0 only when every folder has 90 %.
#
#   scripts/coverage.sh           the table
#   scripts/coverage.sh --lines   the lines that were not run, too, file by file
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if (($# > 1)) || [[ ${1:---lines} != --lines ]]; then
    echo "usage: ${0##*/} [--lines]" >&2
    exit 2
fi
least=90
folders=(core analysis reports counter gpsobd)

scripts/install-dependencies.sh --coverage
scripts/build.sh coverage "${folders[@]/%/_tests}"

failed=()
table=$(printf '%-14s%9s%9s%9s' folder covered lines percent)
for folder in "${folders[@]}"; do
    find build/coverage -name '*.gcda' -delete
    log=build/coverage/$folder.log
    build/coverage/bin/"${folder}_tests" >"$log" 2>&1 || { cat "$log"; exit 1; }
    # The folder itself, without its screens and ports.
    measured=(gcovr --root . --filter "src/$folder/[^/]+\$" build/coverage/src/"$folder" build/coverage/tests/"$folder")
    [[ ${1-} != --lines ]] || "${measured[@]}" --txt
    read -r covered lines < <("${measured[@]}" --csv |
        awk -F, 'NR > 1 { lines += $2; covered += $3 } END { print covered + 0, lines + 0 }')
    row=$(awk -v name="src/$folder" -v covered="$covered" -v lines="$lines" \
        'BEGIN { printf "%-14s%9d%9d%9.1f", name, covered, lines, lines ? 100 * covered / lines : 0 }')
    table+=$'\n'$row
    ((lines > 0 && covered * 100 >= least * lines)) || failed+=("src/$folder")
done
echo "$table"
if ((${#failed[@]})); then
    echo "Below $least %: ${failed[*]}" >&2
    exit 1
fi
