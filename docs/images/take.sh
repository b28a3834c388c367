#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Takes the pictures of the window that README.md shows, light and dark, on a
# virtual display. Run it again when the window has changed.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../.."

scripts/install-packages.sh build test pictures
scripts/build.sh release vexmarrow
for look in light dark; do
    VEXMARROW_SCREEN=1000x740 scripts/on-virtual-display.sh \
        /usr/bin/python3 -B docs/images/take.py build/release/bin/vexmarrow docs/images "$look"
done
