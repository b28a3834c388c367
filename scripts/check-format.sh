#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Checks that every C++ file of the project has the layout that .clang-format
# describes, and begins with the two lines that name its owners and its licence.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mapfile -t files < <(find . \( -name build -o -name .git \) -prune -o \
    \( -name '*.cpp' -o -name '*.h' \) -type f -print | sort)
if [ "${#files[@]}" -eq 0 ]; then
    echo "check-format: no C++ file found" >&2
    exit 1
fi

bad=0
for file in "${files[@]}"; do
    { IFS= read -r first && IFS= read -r second; } <"$file" || true
    if [[ ${first-} != "// SPDX-FileCopyrightText: "* ||
        ${second-} != "// SPDX-License-Identifier: "* ]]; then
        echo "$file: the first two lines do not name its owners and its licence" >&2
        bad=1
    fi
done

clang-format --dry-run -Werror "${files[@]}" || bad=1
exit "$bad"
