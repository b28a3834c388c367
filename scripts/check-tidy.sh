#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Runs clang-tidy over the sources of the program with .clang-tidy, and over the
# tests and fuzz targets with tests/.clang-tidy. It uses the compiler commands of
# the release preset, which must be built first, because the build generates
# some files.
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

# The output of clang-tidy for a file is shown only if it finds a fault, and
# without the count of warnings in system headers.
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
