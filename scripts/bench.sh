#!/usr/bin/env bash
# Builds the benchmarks optimised and runs them; arguments go to the benchmark program, for example
#   scripts/bench.sh --benchmark_filter=Convert
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/build.sh release vantor_bench
exec build/release/bin/vantor_bench "$@"
