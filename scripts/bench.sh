#!/usr/bin/env bash
# Builds the benchmarks in an optimised build (build/bench) and runs every one of them; fails
# when one of them is over its budget.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
build=build/bench
cmake -S . -B "$build" -G Ninja -DPANELKESTRIN_BUILD_BENCH=ON -DPANELKESTRIN_BUILD_TESTS=OFF \
      -DPANELKESTRIN_BUILD_DEMO=OFF -DCMAKE_BUILD_TYPE=Release
cmake --build "$build"
status=0
for bench in "$build"/bench/bench_*; do
    [ -f "$bench" ] && [ -x "$bench" ] || continue
    "$bench" || status=1
done
exit $status
