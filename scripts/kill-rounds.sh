#!/usr/bin/env bash
# Kills a program that stores studies, runs and converted counter files without pause, at random moments, and checks
# after each kill that every file on the disk is whole: the old one or the new one.
#
#   scripts/kill-rounds.sh [ROUNDS]     100 by default; TMPDIR names the disk
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/build.sh release kill_rounds
build/release/bin/kill_rounds "${1:-100}"
