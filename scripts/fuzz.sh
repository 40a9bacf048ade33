#!/usr/bin/env bash
# Builds the libFuzzer targets with clang, the library too, under AddressSanitizer and
# UndefinedBehaviorSanitizer (in build/fuzz) and runs each for a bounded time, offscreen.
#   fuzz.sh [seconds]     seconds per target, 60 unless given
# Seeds come from fuzz/corpus/<name>; what a run finds goes to build/fuzz/corpus/<name>, and a
# crashing input to build/fuzz/crash-*.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh fuzz

seconds=${1:-60}
build=build/fuzz
cmake -S . -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=RelWithDebInfo \
      -DPANELKESTRIN_SANITIZE=ON -DPANELKESTRIN_BUILD_FUZZ=ON \
      -DPANELKESTRIN_BUILD_TESTS=OFF -DPANELKESTRIN_BUILD_DEMO=OFF
cmake --build "$build" -j2

export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
for seeds in fuzz/corpus/*/; do
    name=$(basename "$seeds")
    target="$build/fuzz/fuzz_$name"
    mkdir -p "$build/corpus/$name"
    echo "== fuzz_$name for ${seconds}s"
    "$target" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$build/" \
              "$build/corpus/$name" "$seeds"
done
