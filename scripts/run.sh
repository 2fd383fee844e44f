#!/usr/bin/env bash
# Installs what is missing, builds ZVCore and its demo product in release mode, and runs
# the demo, "Folder Lens". With a display it opens the demo's window; without one it draws
# the main window, the open title menu, the About dialog and the language dialog, in the
# light and dark skins and in English and Arabic, to PNG files and prints their paths.
#
#   bash scripts/run.sh [demo arguments]      e.g. --skin dark, --language German
#   ZV_SCREENSHOTS=<folder> bash scripts/run.sh   pictures even with a display
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"

zv_require "${ZV_BUILD_PACKAGES[@]}"

build="$root/build/release"
echo "==> Configuring $build"
cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
    -DCMAKE_BUILD_TYPE=Release -DZVCORE_DEVELOPER_BUILD=OFF -DZVCORE_BUILD_TESTS=OFF \
    -DZVCORE_BUILD_EXAMPLES=ON >/dev/null
echo "==> Building"
cmake --build "$build" -j "$(nproc)"

demo="$build/demo/zvcore-demo"
if [[ -z "${ZV_SCREENSHOTS:-}" && ( -n "${DISPLAY:-}" || -n "${WAYLAND_DISPLAY:-}" ) ]]; then
    echo "==> Running $demo"
    exec "$demo" "$@"
fi

shots="${ZV_SCREENSHOTS:-$build/screenshots}"
echo "==> No display: drawing the demo's windows offscreen into $shots"
QT_QPA_PLATFORM=offscreen "$demo" --screenshots "$shots" "$@"
echo "==> Done: $(find "$shots" -name '*.png' | wc -l) pictures in $shots"
