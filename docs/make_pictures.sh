#!/bin/bash
# Takes the pictures of the guide and of the README again, from the real windows, into docs/pictures. No screen is needed.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
# shellcheck source=cmake/packages.sh
. cmake/packages.sh

need_packages "${packages[@]}"
build guide_pictures

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/pictures"
cat >"$work/screen.json" <<'END'
{"screens": [{"name": "guide", "x": 0, "y": 0, "width": 1280, "height": 1024,
              "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]}
END
# The folders of the run are as deep as those that the pictures show in their place.
if ! TMPDIR=/tmp QT_QPA_PLATFORM="offscreen:configfile=$work/screen.json" TARVELLO_SHOTS="$work/pictures" \
    build/bin/guide_pictures >"$work/log" 2>&1; then
    cat "$work/log"
    exit 1
fi
rm -f docs/pictures/*.png
cp "$work"/pictures/*.png docs/pictures/
du --bytes --total docs/pictures/*.png | sort -n
