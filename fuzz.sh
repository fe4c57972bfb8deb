#!/bin/bash
# Runs the fuzz targets one after the other: the reader of SQL texts, the settings, print.conf, templates, logo
# pictures, databases of the embedded engine, the readers of rows and pages of Access files, those of receipts,
# signed files and the mails and archives they come in. What they find lies in build-fuzz/found. On a fresh Debian it
# installs what is missing first.
#   ./fuzz.sh [seconds for each, 600 if not given] [targets]
set -euo pipefail
cd "$(dirname "$0")"
seconds=${1:-600}
shift || true
targets=("$@")
((${#targets[@]})) || targets=(statement settings print_conf template logo sqlite row page receipt signed_file receipt_import)

source cmake/packages.sh
need_packages clang "${packages[@]}"

cmake --preset fuzz >/dev/null
cmake --build build-fuzz --target "${targets[@]/%/_fuzz}"
mkdir -p build-fuzz/found
for target in "${targets[@]}"; do
    mkdir -p "build-fuzz/corpus/$target"
    length=4096 samples=()
    if [[ $target == receipt* || $target == signed_file ]]; then
        length=12288 samples=(tests/data/fatturapa/receipts tests/data/fatturapa/p7m)
    elif [[ $target == logo ]]; then
        length=8192 samples=(tests/data/logos data/pictures)
    elif [[ $target == template ]]; then
        length=65536 samples=(data/modelli)
    fi
    echo "== $target, $seconds s"
    "build-fuzz/bin/${target}_fuzz" -max_total_time="$seconds" -timeout=2 -rss_limit_mb=1024 -max_len="$length" -len_control=0 \
        -artifact_prefix="build-fuzz/found/$target-" -print_final_stats=1 "build-fuzz/corpus/$target" "${samples[@]}" 2>&1 | tail -n 12
done
