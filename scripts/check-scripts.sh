#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Checks the project's scripts: those of the shell with shellcheck, those in
# Python with flake8. What is off is named, with its reason, in .shellcheckrc
# and .flake8.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Some have no extension: the first line tells what a script is written in.
mapfile -t shell < <(find . \( -path ./build -o -name .git \) -prune -o -type f \
    -exec grep -lIm1 -E '^#! ?/(usr/)?bin/(env )?(ba|da)?sh$' {} + | sort)
mapfile -t python < <(find . \( -path ./build -o -name .git \) -prune -o -name '*.py' -type f -print | sort)
if [ "${#shell[@]}" -eq 0 ] || [ "${#python[@]}" -eq 0 ]; then
    echo "check-scripts: no script found" >&2
    exit 1
fi

bad=0
shellcheck "${shell[@]}" || bad=1
flake8 "${python[@]}" || bad=1
exit "$bad"
