#!/bin/bash
# Installs what is missing, builds the program and starts it.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
# shellcheck source=cmake/packages.sh
. cmake/packages.sh

need_packages "${packages[@]}"
build program

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}${QT_QPA_PLATFORM:-}" ]; then
    cat >&2 <<'END'
Non c'è uno schermo. Aprire una sessione grafica e ripetere ./run.sh; da una connessione ssh usare "ssh -X".
There is no screen. Open a desktop session and run ./run.sh again; over ssh, use "ssh -X".
END
    exit 1
fi
exec build/bin/tarvello
