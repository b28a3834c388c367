#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Checks the shell scripts of the project with shellcheck and its Python scripts
# with flake8. .shellcheckrc and .flake8 name the checks that are off, and why.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Some shell scripts have no extension; their first line names the shell.
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
