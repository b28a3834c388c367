#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the fuzz targets and runs each of them for the
# given number of seconds, by default 60:
#
#     ./fuzz.sh [SECONDS]
#
# Inputs that make a target fail are kept in fuzz/found/TARGET, and every test run
# tries them again. The exit status is 0 only if none was found.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"

seconds=${1:-60}
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
    echo "fuzz.sh: the number of seconds is wrong. Usage: ./fuzz.sh [SECONDS]" >&2
    exit 2
fi

scripts/install-packages.sh fuzz
scripts/build.sh fuzz

status=0
for seeds in fuzz/seeds/*/; do
    target=$(basename "$seeds")
    found=fuzz/found/$target
    corpus=build/fuzz/corpus/$target
    log=build/fuzz/$target.log
    mkdir -p "$corpus" "$found"
    before=$(ls "$found")
    ended=0
    "build/fuzz/bin/fuzz_$target" -max_total_time="$seconds" -timeout=20 -max_len=4096 \
        -print_final_stats=1 -artifact_prefix="$found/" "$corpus" "$seeds" "$found" \
        >"$log" 2>&1 </dev/null || ended=$?
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
    coverage=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
    result="nothing found"
    if [ "$ended" -ne 0 ] || [ "${runs:-0}" -eq 0 ]; then
        result="FAILED, see $log"
        status=1
    fi
    for name in $(comm -13 <(echo "$before") <(ls "$found")); do
        result="FOUND $found/$name, see $log"
        status=1
    done
    # Only inputs that make the target fail are kept there.
    rmdir --ignore-fail-on-non-empty -p "$found"
    printf '%-12s %10s runs, coverage %5s, %s\n' "$target" "${runs:-0}" "${coverage:-0}" "$result"
done
exit "$status"
