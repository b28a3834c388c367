#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Checks the Debian package that ./package.sh has made, without installing it:
# it must have the same version everywhere, and the tools that check packages,
# menu entries, metainfo and manual pages must find no fault.
#
#     scripts/check-package.sh [FILE.deb]
set -euo pipefail
package=${1:+$(readlink -f "$1")}
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

package=${package:-$(echo build/package/*.deb)}
if [ ! -f "$package" ]; then
    echo "check-package: there is no package $package; ./package.sh makes one" >&2
    exit 1
fi
id=$(sed -n 's/^set(VEXMARROW_DESKTOP_ID \(.*\))$/\1/p' CMakeLists.txt)

tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
dpkg-deb -x "$package" "$tree"
share=$tree/usr/share
home=$tree/usr/lib/vexmarrow
metainfo=$share/metainfo/$id.metainfo.xml

bad=0
fault() {
    printf 'check-package: %s\n' "$*" >&2
    bad=1
}

# Runs a checking tool, which must succeed and write nothing.
silent() {
    local said
    if ! said=$("$@" 2>&1 </dev/null) || [ -n "$said" ]; then
        fault "$*"
        printf '%s\n' "$said" >&2
    fi
}

# --- one version, one day

version=$(sed -n 's/^project(vexmarrow VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
first_of() { sed -n "s/$1/\\1/p" "$2" | head -n 1; }
heading='^## \[\([0-9.]*\)\] - [0-9-]*$'
day=$(first_of '^## \[[0-9.]*\] - \([0-9-]*\)$' CHANGELOG.md)

same() {
    if [ -z "$3" ] || [ "$2" != "$3" ]; then fault "$1: \"$2\" where \"$3\" was expected"; fi
}
same "version of the package" "$(dpkg-deb -f "$package" Version)" "$version"
same "newest version in CHANGELOG.md" "$(first_of "$heading" CHANGELOG.md)" "$version"
same "newest version in the metainfo" "$(first_of '.*<release version="\([^"]*\)".*' "$metainfo")" "$version"
same "newest day in the metainfo" "$(first_of '.*<release .*date="\([^"]*\)".*' "$metainfo")" "$day"
gzip -dc "$share/doc/vexmarrow/changelog.gz" >"$tree/changelog"
gzip -dc "$share/man/man1/vexmarrow.1.gz" >"$tree/vexmarrow.1"
same "version in Debian's changelog" "$(dpkg-parsechangelog -l "$tree/changelog" -S Version)" "$version"
same "day in Debian's changelog" \
    "$(date -u -d "$(dpkg-parsechangelog -l "$tree/changelog" -S Date)" +%F)" "$day"
same "version in the manual page" "$(first_of '^\.TH .*"Vexmarrow \([^"]*\)".*' "$tree/vexmarrow.1")" "$version"

# --- what tools check

# The pictures are beside the program, because it looks for them there. lintian would prefer another
# folder, but reports that only if asked to be pedantic.
lintian --allow-root --fail-on error,warning "$package" || fault "lintian has found fault with $package"
silent desktop-file-validate "$share/applications/$id.desktop"
appstreamcli validate --no-net "$metainfo" >"$tree/said" 2>&1 ||
    { fault "the metainfo is not valid"; cat "$tree/said" >&2; }
appstreamcli validate-tree --no-net "$tree" >"$tree/said" 2>&1 ||
    { fault "the metainfo does not fit the rest"; cat "$tree/said" >&2; }
silent env LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 \
    sh -c 'man --warnings -E UTF-8 -l -Tutf8 -Z "$1" >/dev/null' man "$tree/vexmarrow.1"

# --- what no tool checks

same "where the link of the program leads" "$(readlink -f "$tree/usr/bin/vexmarrow")" "$home/vexmarrow"
[ -x "$home/vexmarrow" ] || fault "the program cannot be started"
if readelf -d "$home/vexmarrow" | grep -E 'R(UN)?PATH'; then
    fault "the program looks for libraries in folders of its own"
fi
if grep -qaF "$PWD" "$home/vexmarrow"; then fault "the program tells the folder it was built in"; fi
for path in Samples Splash; do
    [ -d "$home/$path" ] || fault "$path is missing beside the program"
done
missing=$(diff -rq Samples "$home/Samples" || true)
same "difference of the sample files" "${missing:-none}" none
for path in HAND-M.CUR drag.ico Splash/tips.png; do
    cmp "resources/$path" "$home/$path" || fault "$path is not what it is in resources/"
done

# The pictures of the icon must be made from its current drawings, in the size of their folder.
mkdir "$tree/drawn"
packaging/icons/draw.sh "$tree/drawn"
for drawn in "$tree"/drawn/*.png; do
    size=$(basename "$drawn" .png)
    cmp "$drawn" "$share/icons/hicolor/${size}x$size/apps/$id.png" ||
        fault "the icon of $size pixels is not what packaging/icons/draw.sh draws"
done

[ "$bad" -eq 0 ] || exit 1
echo "$(basename "$package"): no faults found."
