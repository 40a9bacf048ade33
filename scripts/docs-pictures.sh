#!/usr/bin/env bash
# Remakes the README's pictures from the demo's tour, run offscreen on a fresh database: the
# main window and every form (docs/demo-<name>.png, from the tour's <nn>-<name>.png), the three
# command toolbars as the forms show them (docs/toolbar-<class>.png), page 1 of the engine
# report's PDF (docs/report-page.png) and the preview window (docs/report-preview.png).
# The demo is a shop in Leeds: the tour runs with British regional settings (the locale's
# defaults, in a settings store of its own), so its dates read day first.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh test          # pdftoppm comes with poppler-utils
cmake -S . -B build/demo -G Ninja -DPANELKESTRIN_BUILD_TESTS=OFF -DPANELKESTRIN_BUILD_DEMO=ON
cmake --build build/demo

work=build/docs-pictures
rm -rf "$work"
mkdir -p "$work/config"
env -u LC_ALL -u LC_TIME -u LC_NUMERIC LANG=en_GB.UTF-8 XDG_CONFIG_HOME="$PWD/$work/config" QT_QPA_PLATFORM=offscreen \
    build/demo/demo/panelkestrin-demo --tour "$work/tour" --database "$work/orders.sqlite"
for shot in "$work"/tour/[0-9][0-9]-*.png; do
    name=$(basename "$shot")
    cp "$shot" "docs/demo-${name#[0-9][0-9]-}"
done
cp "$work"/tour/toolbar-*.png docs/
pdftoppm -png -r 60 -f 1 -l 1 -singlefile "$work/tour/report-order-lines.pdf" docs/report-page
cp "$work/tour/report-preview.png" docs/report-preview.png
echo "wrote docs/demo-*.png, docs/toolbar-*.png, docs/report-page.png and docs/report-preview.png"
