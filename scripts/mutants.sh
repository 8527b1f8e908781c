#!/usr/bin/env bash
# Plants small faults in the sources and tells which of them the tests do not see; see scripts/mutants.py --help.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/install-dependencies.sh
exec python3 scripts/mutants.py "$@"
