#!/usr/bin/env bash
# Installs the Debian packages the project needs (idempotent; apt runs only when something is missing).
#   setup.sh            build and demo packages
#   setup.sh test       the same plus the PostgreSQL server used by the data tests, the CUPS
#                       scheduler and PDF queue backend the printer tests print to, and the PDF
#                       and RTF readers (poppler-utils, unrtf) that the report tests read back with,
#                       and widl (wine64-tools) that compiles the type description
#   setup.sh fuzz       the same plus clang and its libFuzzer runtime for the fuzz targets
set -euo pipefail
packages=(cmake ninja-build g++ pkg-config
          qt6-base-dev qt6-tools-dev libqt6opengl6-dev designer-qt6 libqt6sql6-sqlite libqt6sql6-psql libgl-dev
          libsqlite3-dev libpq-dev fonts-dejavu-core fonts-liberation)
if [ "${1:-}" = test ]; then
    packages+=(postgresql cups printer-driver-cups-pdf poppler-utils unrtf wine64-tools)
fi
if [ "${1:-}" = fuzz ]; then
    packages+=(clang-14 libclang-rt-14-dev)
fi

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    [ "$(id -u)" = 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
    if [ "${1:-}" = test ]; then
        # The packaged cluster is not used (the tests start their own); keep it from holding a port.
        "${sudo_cmd[@]}" service postgresql stop >/dev/null 2>&1 || true
    fi
fi
