#!/usr/bin/env bash
# Installs what is missing, builds the library and every test, and runs them all with CTest.
#   test.sh               normal build in build/tests
#   test.sh --sanitize    AddressSanitizer + UndefinedBehaviorSanitizer build in build/tests-asan
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh test

build=build/tests
flags=()
if [ "${1:-}" = --sanitize ]; then
    build=build/tests-asan
    flags=(-DPANELKESTRIN_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug)
    export ASAN_OPTIONS=detect_leaks=0
    export UBSAN_OPTIONS=print_stacktrace=1
fi
cmake -S . -B "$build" -G Ninja -DPANELKESTRIN_BUILD_TESTS=ON -DPANELKESTRIN_BUILD_DEMO=ON "${flags[@]}"
cmake --build "$build"
cd "$build"
ctest --output-on-failure --timeout 600
