#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Writes the changelog of the Debian package: the content of CHANGELOG.md in the
# format of Debian's tools.
#
#     debian-changelog.sh CHANGELOG.md MAINTAINER
set -euo pipefail

maintainer=$2
date=

# The entry of a release ends with its maintainer and its date.
end_release() {
    if [ -n "$date" ]; then
        printf '\n -- %s  %s\n' "$maintainer" "$(LC_ALL=C date -u -R -d "$date")"
    fi
}

release='^## \[([0-9.]+)\] - ([0-9]{4}-[0-9]{2}-[0-9]{2})$'
while IFS= read -r line; do
    if [[ $line =~ $release ]]; then
        [ -z "$date" ] || { end_release; echo; }
        date=${BASH_REMATCH[2]}
        printf 'vexmarrow (%s) unstable; urgency=medium\n' "${BASH_REMATCH[1]}"
    elif [ -z "$date" ] || [ -z "$line" ]; then
        continue
    elif [[ $line == '### '* ]]; then
        printf '\n  [ %s ]\n' "${line#'### '}"
    elif [[ $line == '- '* ]]; then
        printf '  * %s\n' "${line#- }"
    elif [[ $line == '  '* ]]; then
        printf '    %s\n' "${line#  }"
    else
        printf '\n  %s\n' "$line"
    fi
done <"$1"

if [ -z "$date" ]; then
    echo "debian-changelog: $1 names no release" >&2
    exit 1
fi
end_release
