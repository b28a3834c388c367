#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Tests the Debian package in a clean system. It makes a root with a minimal Debian
# of this machine's release, installs the package and its dependencies there, does
# the sample job with the installed program as an ordinary user on a virtual
# display, purges the package, and checks that everything is as it was before.
#
#     scripts/test-package.sh [FILE.deb]
#
# It must run as root, with permission to make namespaces, mounts and device
# files. The exit status is 77 if that is refused or if no such root can be made;
# then nothing was tested.
#
# All mounts are made in a separate namespace. No other process sees them, and they
# vanish with the last process in it. Nothing of this machine is mounted into the
# root, so removing the root cannot remove anything else.
set -euo pipefail
project=$(readlink -f "$(dirname "${BASH_SOURCE[0]}")/..")
self=$project/scripts/test-package.sh

say() { printf 'test-package: %s\n' "$*"; }
die() {
    say "$*" >&2
    exit 1
}

refused=77
user=tester
id=$(sed -n 's/^set(VEXMARROW_DESKTOP_ID \(.*\))$/\1/p' "$project/CMakeLists.txt")

# --- the part inside the namespaces; its variables: root, package

in_root() {
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 TERM=dumb \
        DEBIAN_FRONTEND=noninteractive \
        ${http_proxy+http_proxy="$http_proxy"} ${https_proxy+https_proxy="$https_proxy"} \
        ${no_proxy+no_proxy="$no_proxy"} \
        chroot "$root" "$@" </dev/null
}
as_user() { in_root runuser -u "$user" -- "$@"; }

# Runs a command; its output is shown only if it fails.
quietly() {
    if ! "$@" >"$root.log" 2>&1 </dev/null; then
        cat "$root.log" >&2
        die "failed: $*"
    fi
}
apt() { quietly in_root apt-get -q -y --no-install-recommends "$@"; }

# The source from which apt gets a release. The distribution's own source comes first, because other
# sources may have a release of the same name.
source_of() {
    {
        apt-get indextargets --format '$(CODENAME) $(SITE)' 'Created-By: Packages' 'Origin: Debian'
        apt-get indextargets --format '$(CODENAME) $(SITE)' 'Created-By: Packages'
    } | sed -n "s/^$1 //p" | sed 1q
}

make_root() {
    local release site keys=() more=()
    # shellcheck source=/dev/null
    release=$(. /etc/os-release && echo "${VERSION_CODENAME:?}")
    site=$(source_of "$release")
    if [ -z "$site" ]; then
        quietly apt-get -q update
        site=$(source_of "$release")
    fi
    [ -n "$site" ] || die "apt knows no source for $release"
    if [[ $site == https:* ]]; then more=(--include=ca-certificates); fi
    if [ -f /usr/share/keyrings/debian-archive-keyring.gpg ]; then
        keys=(--keyring=/usr/share/keyrings/debian-archive-keyring.gpg)
    fi
    say "making a root of $release"
    # A failure here has nothing to do with the package.
    if ! debootstrap --variant=minbase "${keys[@]}" "${more[@]}" "$release" "$root" "$site" \
        >"$root.log" 2>&1 </dev/null; then
        cat "$root.log" >&2
        say "NOT TESTED: no root could be made" >&2
        exit "$refused"
    fi

    # In some containers, the root gets a link instead of a folder for the process table.
    if [ -L "$root/proc" ]; then
        rm "$root/proc"
        mkdir "$root/proc"
    fi
    mountpoint -q "$root/proc" || mount -t proc -o nosuid,nodev,noexec proc "$root/proc"

    # Packages come from the same sources as those of this machine.
    local entry
    rm -f "$root/etc/apt/sources.list"
    for entry in sources.list sources.list.d apt.conf apt.conf.d trusted.gpg trusted.gpg.d keyrings \
        preferences preferences.d; do
        [ -e "/etc/apt/$entry" ] || continue
        cp -rLT "/etc/apt/$entry" "$root/etc/apt/$entry"
    done
    if [ -d /usr/share/keyrings ]; then cp -rL /usr/share/keyrings/. "$root/usr/share/keyrings"; fi
    cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
    # No services are started here, and nothing has to survive a power cut.
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod 755 "$root/usr/sbin/policy-rc.d"
    echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/unsafe-io"
    quietly in_root useradd --create-home --shell /bin/bash "$user"

    mkdir "$root/tmp/kit" "$root/tmp/kit/scripts"
    cp "$package" "$root/tmp/kit/"
    cp -r "$project/tests/e2e" "$root/tmp/kit/e2e"
    cp "$project"/scripts/{install-packages,on-virtual-display}.sh "$root/tmp/kit/scripts/"
    chmod -R a+rX "$root/tmp/kit"
}

# The dependencies of the package must be complete: with them alone, all libraries are found and the
# program starts.
try_dependencies_alone() {
    local needed
    quietly in_root apt-get -q update
    apt --simulate install "$deb"
    mapfile -t needed < <(sed -n 's/^Inst \([^ ]*\) .*/\1/p' "$root.log" | grep -vx vexmarrow)
    say "installing its dependencies: ${#needed[@]} packages"
    apt install "${needed[@]}"
    quietly in_root apt-mark auto "${needed[@]}"

    quietly in_root dpkg-deb -x "$deb" /tmp/unpacked
    local program=/tmp/unpacked/usr/lib/vexmarrow/vexmarrow library
    for library in "$program" $(in_root find /usr/lib -name libqxcb.so); do
        if in_root ldd "$library" | grep 'not found'; then die "libraries of $library are missing"; fi
    done
    # The program has started when it has written its first settings. Without them, this fails.
    quietly as_user env QT_QPA_PLATFORM=offscreen bash -c '
        export HOME=$(mktemp -d)
        export XDG_CONFIG_HOME=$HOME XDG_STATE_HOME=$HOME XDG_RUNTIME_DIR=$HOME
        "$1" & program=$!
        for _ in $(seq 600); do
            if [ -s "$XDG_CONFIG_HOME/Quillmoor.ini" ]; then kill $program; exit 0; fi
            kill -0 $program || break
            sleep 0.1
        done
        exit 1' start "$program"
}

# Every file with its kind, permissions, owner and content, except the files that the package tools,
# the caches of the system and the tests write.
snapshot() {
    (
        cd "$root"
        find . \( -path ./proc -o -path ./sys -o -path ./dev -o -path ./run -o -path ./tmp \
            -o -path "./home/$user" -o -path ./var/cache -o -path ./var/log -o -path ./var/lib/apt \
            -o -path ./var/lib/dpkg -o -path ./var/tmp \) -prune -o -print0 | sort -z >"$1.paths"
        xargs -0 -a "$1.paths" stat -c '%F %a %u:%g %N'
        xargs -0 -a "$1.paths" sh -c 'for f; do [ -L "$f" ] || ! [ -f "$f" ] || printf "%s\0" "$f"; done' sh |
            xargs -0 sha256sum
    ) >"$1"
}

# The files in the user's home folder, except those that every new user gets, caches, and the settings
# of the toolkit's file dialogs, which all programs share.
own_files() {
    (
        cd "$root/home/$user"
        find . -mindepth 1 -path ./.cache -prune -o -newer "$root/tmp/kit/begun" -printf '%P\n' |
            sort | grep -vx .config/QtProject.conf
    )
}

icon_cache() { in_root grep -aqsF "$id" /usr/share/icons/hicolor/icon-theme.cache; }

inside() {
    root=$1 package=$2
    deb=/tmp/kit/$(basename "$package")
    umask 022
    make_root
    try_dependencies_alone

    say "installing a virtual display and the tools that update menus and icons"
    quietly in_root /tmp/kit/scripts/install-packages.sh desktop
    apt install desktop-file-utils hicolor-icon-theme gtk-update-icon-cache
    snapshot "$root.before"
    touch "$root/tmp/kit/begun"

    say "installing the package"
    apt install "$deb"
    grep -q '^0 upgraded, 1 newly installed, 0 to remove' "$root.log" ||
        { cat "$root.log" >&2; die "more than the package was installed"; }
    [ "$(in_root sh -c 'command -v vexmarrow')" = /usr/bin/vexmarrow ] || die "there is no command vexmarrow"
    in_root gtk-update-icon-cache --quiet --validate /usr/share/icons/hicolor ||
        die "the cache of icons is damaged"
    icon_cache || die "the icon is not in the cache of icons"
    in_root desktop-file-validate "/usr/share/applications/$id.desktop" || die "the menu entry is not valid"

    say "doing the sample job as an ordinary user"
    as_user /tmp/kit/scripts/on-virtual-display.sh env -u XDG_CONFIG_HOME -u XDG_STATE_HOME \
        -u XDG_DATA_HOME -u XDG_CACHE_HOME HOME="/home/$user" \
        /usr/bin/python3 -B /tmp/kit/e2e/sample_job.py /usr/bin/vexmarrow /tmp/window.png \
        >"$root.job" 2>&1 || { cat "$root.job" >&2; die "the sample job went wrong"; }
    tail -n 2 "$root.job" | head -n 1
    local samples found
    samples=$(in_root find /usr/lib/vexmarrow/Samples -type f | wc -l)
    found=$(in_root grep -oF /usr/lib/vexmarrow/Samples/ "/home/$user/.config/Quillmoor.ini" | wc -l)
    [ "$found" -gt 0 ] && [ "$found" -eq "$samples" ] ||
        die "the program found $found of its $samples sample files beside itself"

    say "purging the package"
    apt purge vexmarrow
    ! in_root dpkg-query -W vexmarrow >/dev/null 2>&1 || die "dpkg still knows the package"
    ! icon_cache || die "the icon is still in the cache of icons"
    snapshot "$root.after"
    diff "$root.before" "$root.after" || die "installing and purging left these differences"
    # The log of the run also belongs to the user: it holds the old texts of the samples.
    local own wanted=$'.config\n.config/Quillmoor.ini\n.local\n.local/state\n.local/state/vexmarrow'
    own=$(own_files)
    [ "$own" = "$wanted"$'\n.local/state/vexmarrow/0000000001.run' ] ||
        die "of the user's, settings and the log of the run should be there, but there is: $own"
    say "only the settings and the log of the user are left"
}

if [ "${1-}" = --inside ]; then
    inside "$2" "$3"
    exit 0
fi

# --- the part outside

package=${1:-$(echo "$project"/build/package/*.deb)}
[ -f "$package" ] || die "there is no package $package; ./package.sh makes one"
package=$(readlink -f "$package")
[ "$(id -u)" -eq 0 ] || die "this must be root: sudo scripts/test-package.sh"
"$project/scripts/install-packages.sh" packagetest

# /tmp is not used because it may be in memory.
work=$(mktemp -d "${TMPDIR:-/var/tmp}/vexmarrow-root.XXXXXX")
spaces=

cleanup() {
    trap '' INT TERM HUP
    if [ -n "$spaces" ]; then
        # When the first process in the namespaces ends, the system ends all others in them.
        local first
        first=$(cat "/proc/$spaces/task/$spaces/children" 2>/dev/null || true)
        # shellcheck disable=SC2086
        kill -KILL ${first:-$spaces} 2>/dev/null || true
        wait "$spaces" 2>/dev/null || true
    fi
    if grep -qF " $work" /proc/self/mountinfo; then
        say "something is mounted below $work; it is left as it is" >&2
    else
        rm -rf --one-file-system "$work"
    fi
}
trap cleanup EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

apart=(unshare --mount --propagation private --pid --fork --kill-child)
mkdir "$work/probe"
if ! said=$("${apart[@]}" sh -ec 'mount -t proc proc "$1"; umount "$1"; mknod "$1/null" c 1 3
    echo >"$1/null"' probe "$work/probe" 2>&1); then
    say "NOT TESTED: this machine does not let root make namespaces, mounts or device files: $said" >&2
    exit "$refused"
fi

"${apart[@]}" "$self" --inside "$work/root" "$package" &
spaces=$!
status=0
wait "$spaces" || status=$?
spaces=
[ "$status" -ne "$refused" ] || exit "$refused"
[ "$status" -eq 0 ] || exit 1
say "passed in $SECONDS s: $(basename "$package")"
