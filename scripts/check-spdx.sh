#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Checks that every file of the project begins with the two lines that name its
# owners and its licence. The files listed here cannot or need not have them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Patterns of paths, each with its reason. A pattern that matches no file is an error.
exempt=(
    'LICENSE'               # it is the licence itself
    'packaging/copyright.in' # it names both in the form that Debian requires
    '*.md'                  # text, which the licence of the project covers
    'CMakePresets.json'     # JSON has no comments
    'Samples/*'             # data that must keep every byte
    'fuzz/*/*'              # seeds, and inputs that made a target fail
    '*.png'                 # pictures made from drawings that name both
    '*.CUR'
    '*.ico'
)

# The files that git has or would add; without git, all files except those that are built.
list() {
    if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git ls-files -z --cached --others --exclude-standard --deduplicate
    else
        find . \( -path ./build -o -name .git -o -name __pycache__ \) -prune -o -type f -printf '%P\0'
    fi
}
mapfile -d '' -t files < <(list | sort -z)

# Whether a file begins with the two lines, as comments of any kind. A line that must be the first
# in files of that kind may come before them.
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
        echo "$file: does not begin with the two lines that name its owners and its licence" >&2
        bad=1
    fi
done
for pattern in "${exempt[@]}"; do
    if [ -z "${used[$pattern]-}" ]; then
        echo "check-spdx: no file matches the exempt pattern $pattern" >&2
        bad=1
    fi
done
if [ "$checked" -eq 0 ]; then
    echo "check-spdx: no file found" >&2
    bad=1
fi
exit "$bad"
