#!/usr/bin/env bash
# Installs what is missing, builds the library and the demo, and runs the demo. With no display
# the demo runs its scripted tour offscreen and writes screenshots to the folder it names.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/demo -G Ninja -DPANELKESTRIN_BUILD_TESTS=OFF -DPANELKESTRIN_BUILD_DEMO=ON
cmake --build build/demo
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    export QT_QPA_PLATFORM=offscreen
    exec build/demo/demo/panelkestrin-demo --tour "${PK_TOUR_DIR:-build/demo/tour}" "$@"
fi
exec build/demo/demo/panelkestrin-demo "$@"
