#!/usr/bin/env bash
# Remakes the README's report pictures: runs the demo's tour offscreen on a fresh database,
# turns page 1 of the engine report's PDF into docs/report-page.png and copies the preview
# window's screenshot to docs/report-preview.png.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh test          # pdftoppm comes with poppler-utils
cmake -S . -B build/demo -G Ninja -DPANELKESTRIN_BUILD_TESTS=OFF -DPANELKESTRIN_BUILD_DEMO=ON
cmake --build build/demo

work=build/docs-pictures
rm -rf "$work"
QT_QPA_PLATFORM=offscreen build/demo/demo/panelkestrin-demo --tour "$work/tour" --database "$work/orders.sqlite"
pdftoppm -png -r 60 -f 1 -l 1 -singlefile "$work/tour/report-order-lines.pdf" docs/report-page
cp "$work/tour/report-preview.png" docs/report-preview.png
echo "wrote docs/report-page.png and docs/report-preview.png"
