#!/bin/bash
# Installs what is missing, builds everything and runs all tests; no screen is needed.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
# shellcheck source=cmake/packages.sh
. cmake/packages.sh

need_packages "${packages[@]}"
build all
QT_QPA_PLATFORM=offscreen ctest --preset "$preset" --parallel "$(nproc)" "$@"
