#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Installs the Debian packages of the named groups that are missing. It prints
# nothing if none is missing.
#
#     scripts/install-packages.sh GROUP...
#
# Groups:
#     build        to compile the program and to show its window
#     wayland      to show the window without an X server
#     desktop      to use the window without a screen: a virtual display, a window
#                  manager and the accessibility bus
#     test         to build and run the tests, in addition to build: the test library,
#                  wayland, desktop, a parser of cards and a Wayland compositor
#     bench        to run the benchmarks, in addition to build: their library, and the
#                  tools that the program is compared with
#     check        to check the layout and the quality of the code and the scripts
#     pictures     to take pictures of the window in the dark colours of a desktop
#     fuzz         to build and run the fuzz targets: a compiler with libFuzzer, its
#                  runtime, and the tool that adds line numbers to its reports
#     package      to make and check the Debian package
#     packagetest  to make a clean root in which the package is installed
set -euo pipefail

say() { printf '%s\n' "$*"; }

packages_of() {
    case $1 in
    build) echo g++ cmake ninja-build pkg-config qt6-base-dev libicu-dev libxxhash-dev fonts-liberation ;;
    wayland) echo qt6-wayland ;;
    desktop) echo xvfb openbox dbus at-spi2-core python3 python3-pyatspi libxtst6 scrot x11-utils \
        wmctrl ;;
    test) echo libgtest-dev libgmock-dev python3-vobject weston "$(packages_of wayland) $(packages_of desktop)" ;;
    bench) echo libbenchmark-dev strace perl sed coreutils ;;
    check) echo clang-format clang-tidy shellcheck flake8 ;;
    pictures) echo qt6ct ;;
    fuzz) echo clang libclang-rt-14-dev llvm cmake ninja-build pkg-config libicu-dev libxxhash-dev ;;
    package) echo dpkg-dev file binutils lintian desktop-file-utils appstream man-db librsvg2-bin ;;
    packagetest) echo debootstrap ;;
    *) return 1 ;;
    esac
}

reason_of() {
    case $1 in
    build) echo "to build the program and to show its window" ;;
    wayland) echo "to show the window on this desktop" ;;
    desktop) echo "to show and use the window where there is no display" ;;
    test) echo "to build and run the tests, and the window where there is no display" ;;
    bench) echo "to measure how fast it is" ;;
    check) echo "to check the code" ;;
    pictures) echo "to take pictures of the window in dark colours" ;;
    fuzz) echo "to build and run the fuzz targets" ;;
    package) echo "to make and check the Debian package" ;;
    packagetest) echo "to install the package in a clean root" ;;
    esac
}

wanted=()
for group in "$@"; do
    if ! names=$(packages_of "$group"); then
        say "install-packages: no such group: $group" >&2
        exit 2
    fi
    read -r -a names <<<"$names"
    wanted+=("${names[@]}")
done
[ "${#wanted[@]}" -gt 0 ] || exit 0

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "This system has no Debian packages, so nothing is installed. Please install the equivalents of:" >&2
    say "  ${wanted[*]}" >&2
    exit 0
fi

installed() { [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

missing=()
for group in "$@"; do
    lacking=()
    for name in $(packages_of "$group"); do
        installed "$name" || lacking+=("$name")
    done
    if [ "${#lacking[@]}" -gt 0 ]; then
        say "Needed $(reason_of "$group"): ${lacking[*]}"
        missing+=("${lacking[@]}")
    fi
done
[ "${#missing[@]}" -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        say "They can only be installed by root, and there is no sudo. As root, run:" >&2
        say "  apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 "$@" \
        >>"$log" 2>&1 </dev/null
}

say "Installing them with apt-get; the first time, this takes some minutes."
if [ "${#as_root[@]}" -gt 0 ] && ! sudo -v; then
    say "sudo was refused. As root, run:" >&2
    say "  apt-get install --no-install-recommends ${missing[*]}" >&2
    exit 1
fi
if ! apt update || ! apt install --no-install-recommends "${missing[@]}"; then
    cat "$log" >&2
    say "The packages could not be installed: ${missing[*]}" >&2
    exit 1
fi
say "Installed."
