#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds everything and runs every test: the parts
# below the window, the window itself, and the whole program on a virtual
# display. The exit status is 0 only if all of them pass.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"

scripts/install-packages.sh build test
scripts/build.sh release
ctest --preset release --output-on-failure --no-tests=error "$@"
