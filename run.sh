#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the program and starts it. If there is no
# display, the window opens on a virtual one, the sample job is done there with
# the window's own buttons, and the result is printed here.
set -euo pipefail
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
program=$here/build/release/bin/vexmarrow

packages=(build)
if [ -n "${DISPLAY-}" ]; then
    display=x11
elif [ -n "${WAYLAND_DISPLAY-}" ]; then
    display=wayland
    packages+=(wayland)
else
    display=
    packages+=(test)
    echo "There is no display: the window opens on a virtual one, and the sample job is done there."
fi

"$here/scripts/install-packages.sh" "${packages[@]}"
"$here/scripts/build.sh" release vexmarrow

if [ -n "$display" ]; then
    exec "$program" "$@"
fi
mkdir -p "$here/build/sample-job"
exec "$here/scripts/on-virtual-display.sh" \
    /usr/bin/python3 -B "$here/tests/e2e/sample_job.py" "$program" "$here/build/sample-job/window.png"
