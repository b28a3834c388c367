#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Compares the speed of the program with that of tools that copy and edit files.
# It installs what is missing, builds, makes files to work on, runs everything in
# turn on a virtual display, prints a table, and removes the files.
#
#     ./bench.sh [--quick] [--rounds N] [ROW...]     ./bench.sh --help
#
# It works in a folder under build/ and in one under /dev/shm; VEXMARROW_BENCH_DISK
# and VEXMARROW_BENCH_MEMORY name other places for them. docs/PERFORMANCE.md
# describes what is measured.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"

disk=''
memory=''
job=''
cleanup() {
    trap '' INT TERM HUP
    if [ -n "$job" ]; then
        kill "$job" 2>/dev/null || true
        wait "$job" 2>/dev/null || true
    fi
    if [ -n "$disk" ]; then echo "Removing the files that were worked on."; fi
    rm -rf ${disk:+"$disk"} ${memory:+"$memory"}
}
trap cleanup EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

for argument in "$@"; do
    if [ "$argument" = --help ] || [ "$argument" = -h ]; then
        exec python3 -B bench/bench.py --help
    fi
done

scripts/install-packages.sh build test bench
scripts/build.sh bench benches
disk=$(mktemp -d "${VEXMARROW_BENCH_DISK:-$PWD/build}/bench-work.XXXXXX")
memory=$(mktemp -d "${VEXMARROW_BENCH_MEMORY:-/dev/shm}/vexmarrow-bench.XXXXXX")

# In the background, because a shell handles signals only between foreground
# commands; it waits for the command below.
scripts/on-virtual-display.sh python3 -B bench/bench.py --programs "$PWD/build/bench/bin" \
    --disk "$disk" --memory "$memory" "$@" </dev/null &
job=$!
status=0
wait "$job" || status=$?
job=''
exit "$status"
