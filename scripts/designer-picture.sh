#!/usr/bin/env bash
# Photographs Qt Designer with the library's controls for the README (docs/designer.png):
# builds the Designer plugin, runs Designer offscreen on a form holding the six controls, with
# the widget box filtered to the PanelKestrin group, and saves the picture.
#   bash scripts/designer-picture.sh [build folder, default build/demo]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="$(realpath -m "${1:-$root/build/demo}")"
bash "$root/scripts/setup.sh"
cmake -S "$root" -B "$build" -G Ninja >/dev/null
cmake --build "$build" --target panelkestrin-designer
cmake -S "$root/scripts/designer-picture" -B "$build/designer-snapshot" -G Ninja >/dev/null
cmake --build "$build/designer-snapshot"

plugins="$(mktemp -d)"
config="$(mktemp -d)"
trap 'rm -rf "$plugins" "$config"' EXIT
mkdir -p "$plugins/designer"
ln -s "$build/plugins/designer/libpanelkestrin-designer.so" "$plugins/designer/"
ln -s "$build/designer-snapshot/libdesignersnapshot.so" "$plugins/designer/"
# A fresh Designer profile: no dialog for a new form, nothing remembered from earlier runs.
mkdir -p "$config/QtProject"
printf '[newFormDialog]\nShowOnStartup=false\n' > "$config/QtProject/Designer.conf"

designer="$(command -v designer || echo /usr/lib/qt6/bin/designer)"
QT_QPA_PLATFORM=offscreen QT_PLUGIN_PATH="$plugins" XDG_CONFIG_HOME="$config" \
    PK_DESIGNER_SNAPSHOT="$root/docs/designer.png" \
    timeout 120 "$designer" "$root/scripts/designer-picture/showcase.ui"
