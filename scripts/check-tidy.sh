#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Runs clang-tidy over the sources of the program, as .clang-tidy says, and over
# its tests and fuzz targets, as tests/.clang-tidy says, with the commands by
# which the release preset compiles them; that preset must have been built
# before, for the files that the build generates.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

database=build/release/compile_commands.json
if [ ! -f "$database" ]; then
    echo "check-tidy: $database is missing; build the release preset first" >&2
    exit 1
fi

mapfile -t files < <(find src tests fuzz -name '*.cpp' -type f | sort)
if [ "${#files[@]}" -eq 0 ]; then
    echo "check-tidy: no source found" >&2
    exit 1
fi

# What clang-tidy says about one file is shown only when it finds fault, and
# without its count of warnings in the headers of others.
check_one() {
    local said config=.clang-tidy
    case $1 in tests/* | fuzz/*) config=tests/.clang-tidy ;; esac
    if ! said=$(clang-tidy --quiet --config-file="$config" --warnings-as-errors='*' \
        --extra-arg=-Wno-unknown-warning-option -p build/release "$1" 2>&1); then
        sed '/^[0-9]* warnings* generated\.$/d' <<<"$said" >&2
        return 1
    fi
}
export -f check_one

printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'check_one "$1"' check-tidy
