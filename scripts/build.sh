#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Configures and builds a preset. The output of the tools is shown only if they
# fail. If targets are named and the test library is missing, the tests are left
# out. With VEXMARROW_STRICT=1, compiler warnings are errors in every preset.
#
#     scripts/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=$1
shift
targets=()
tests=ON
if [ $# -gt 0 ]; then
    targets=(--target "$@")
    pkg-config --exists gmock || tests=OFF
fi

settings=(-DVEXMARROW_TESTS="$tests")
if [ -n "${VEXMARROW_STRICT-}" ]; then settings+=(-DCMAKE_COMPILE_WARNING_AS_ERROR=ON); fi

mkdir -p "build/$preset"
log=build/$preset/build.log
quietly() {
    if ! "$@" >>"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        echo "The build failed ($*); the lines above are also in $log" >&2
        exit 1
    fi
}

: >"$log"
if [ ! -f "build/$preset/build.ninja" ]; then
    echo "Building ($preset); the first time this takes a few minutes."
fi
quietly cmake --preset "$preset" "${settings[@]}"
quietly cmake --build --preset "$preset" "${targets[@]}"
