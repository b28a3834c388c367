#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the program and makes its Debian package,
# build/package/vexmarrow_VERSION_ARCHITECTURE.deb
#
#     ./package.sh                        makes the package
#     ./package.sh --check-reproducible   makes it, and makes it again from a copy of the
#                                         source in another folder; both packages must be
#                                         the same, byte for byte
set -euo pipefail
umask 022 # the folders in the package get the rights that this leaves
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"

twice=
case ${1-} in
'') ;;
--check-reproducible) twice=1 ;;
*)
    echo "package.sh: unknown argument \"$1\". Usage: ./package.sh [--check-reproducible]" >&2
    exit 2
    ;;
esac

# The date of the package must not depend on the clock: it is the time of the last commit or, without
# git, the day of the newest release.
if [ -z "${SOURCE_DATE_EPOCH-}" ]; then
    if ! { [ -e .git ] && SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null); }; then
        day=$(sed -n 's/^## \[[0-9.]*\] - \([0-9-]*\)$/\1/p' CHANGELOG.md | head -n 1)
        SOURCE_DATE_EPOCH=$(date -u -d "${day:?CHANGELOG.md names no release}" +%s)
    fi
fi
export SOURCE_DATE_EPOCH

scripts/install-packages.sh build package
scripts/build.sh release vexmarrow vexmarrow_papers

mkdir -p build/package
rm -f build/package/*.deb build/package/*.deb.txt
log=$PWD/build/package/package.log
if ! (cd build/release && cpack -B ../package) >"$log" 2>&1 </dev/null; then
    cat "$log" >&2
    echo "The package could not be made; the lines above are also in $log" >&2
    exit 1
fi
package=$(echo build/package/*.deb)
echo "The package: $package ($(stat -c %s "$package") bytes)"
[ -n "$twice" ] || exit 0

# The second build has a folder name of another length, other file times, another time zone and
# other permissions for new files. None of them may change the package.
elsewhere=$(mktemp -d "${TMPDIR:-/tmp}/vexmarrow-built-elsewhere.XXXXXX")
trap 'rm -rf "$elsewhere"' EXIT
mkdir "$elsewhere/source"
tar -c --exclude=./.git --exclude=./build . | tar -x -m -C "$elsewhere/source"
(
    umask 077
    TZ=Pacific/Chatham LC_ALL=C "$elsewhere/source/package.sh"
)
if ! cmp "$package" "$elsewhere/source/$package"; then
    cp "$elsewhere/source/$package" build/package/elsewhere.deb.txt
    echo "Two builds gave different packages; the second is build/package/elsewhere.deb.txt" >&2
    exit 1
fi
echo "Built twice, in different folders: the same, byte for byte."
sha256sum "$package"
