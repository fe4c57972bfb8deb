#!/bin/bash
# Builds the benchmarks, runs them and prints one table: each row beside its floor. On a fresh Debian it
# installs what is missing first. Arguments go to the benchmarks: ./bench.sh --benchmark_filter=paging
set -euo pipefail
cd "$(dirname "$0")"

# shellcheck source=cmake/packages.sh
. cmake/packages.sh
need_packages "${packages[@]}" libbenchmark-dev python3

cmake --preset bench >/dev/null
cmake --build build-bench --target benchmarks

# One processor, the repetitions of all rows mixed: what disturbs the machine for a while disturbs all of them.
results=build-bench/results
mkdir -p "$results"
rm -f "$results"/*.json
for binary in build-bench/bench/*_bench build-bench/bin/*_bench; do
    QT_QPA_PLATFORM=offscreen taskset -c 0 "$binary" --benchmark_repetitions=9 \
        --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
        --benchmark_out="$results/$(basename "$binary").json" --benchmark_out_format=json "$@" >/dev/null
done
python3 bench/table.py "$results"/*.json
