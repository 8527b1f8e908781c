#!/usr/bin/env bash
# Builds the benchmarks optimised and runs them.
#
#   scripts/bench.sh [--quick]        the table of docs/performance.md; --quick with smaller files
#   scripts/bench.sh --benchmark_...  the benchmark program with these arguments, for example
#                                     --benchmark_filter=Convert
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [[ ${1-} == --benchmark_* ]]; then
    scripts/build.sh release vantor_bench
    exec build/release/bin/vantor_bench "$@"
fi
scripts/install-dependencies.sh --bench
scripts/build.sh release vantor vantor_bench empty_window open_study study_statistics
cd build/release
exec python3 -B ../../bench/figures.py bin "$@"
