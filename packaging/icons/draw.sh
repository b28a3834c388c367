#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Makes the pictures of the icon, one for each size, in the folder of this script
# or in another one. It needs librsvg2-bin.
#
#     draw.sh [FOLDER]
set -euo pipefail
here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
folder=${1:-$here}

for size in 16 22 24 32; do
    rsvg-convert -w "$size" -h "$size" -o "$folder/$size.png" "$here/small.svg"
done
for size in 48 64 128 256; do
    rsvg-convert -w "$size" -h "$size" -o "$folder/$size.png" "$here/icon.svg"
done
