#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Checks that every file of the project opens with the two lines that name its
# owners and its licence, except those listed here, which cannot or need not.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Patterns of paths, each with its reason. One that fits no file is a mistake.
exempt=(
    'LICENSE'               # is the licence
    'packaging/copyright.in' # becomes a paper that names both in a form of its own
    '*.md'                  # prose; the licence of the whole covers it
    'CMakePresets.json'     # JSON has no comments
    'Samples/*'             # data, whose every byte matters
    'fuzz/*/*'              # seeds, and what was found, if anything was
    '*.png'                 # pictures, made from drawings that name both
    '*.CUR'
    '*.ico'
)

# What git knows or would take; without git, everything but what is built.
list() {
    if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git ls-files -z --cached --others --exclude-standard --deduplicate
    else
        find . \( -path ./build -o -name .git -o -name __pycache__ \) -prune -o -type f -printf '%P\0'
    fi
}
mapfile -d '' -t files < <(list | sort -z)

# Whether a file opens with the two lines, in whatever its comments look like; a line that must be
# the first of its kind of file may stand before them.
names_both() {
    awk '
        NR == 1 && /^#!/ || NR <= 2 && /^(<\?xml .*|<!--)$/ { next }
        !owner { if (!sub(/SPDX-FileCopyrightText: [0-9]+ .+$/, "")) exit; owner = 1; mark = $0; next }
        { good = sub(/SPDX-License-Identifier: [A-Za-z0-9.-]+$/, "") && $0 == mark; exit }
        END { exit !good }' "$1"
}

bad=0
checked=0
declare -A used=()
for file in "${files[@]}"; do
    [ -f "$file" ] || continue # deleted, but not yet for git
    for pattern in "${exempt[@]}"; do
        # shellcheck disable=SC2053
        if [[ $file == $pattern ]]; then
            used[$pattern]=1
            continue 2
        fi
    done
    checked=$((checked + 1))
    if ! names_both "$file"; then
        echo "$file: does not open with the two lines that name owner and licence" >&2
        bad=1
    fi
done
for pattern in "${exempt[@]}"; do
    if [ -z "${used[$pattern]-}" ]; then
        echo "check-spdx: no file is like the exempt $pattern any more" >&2
        bad=1
    fi
done
if [ "$checked" -eq 0 ]; then
    echo "check-spdx: no file found" >&2
    bad=1
fi
exit "$bad"
