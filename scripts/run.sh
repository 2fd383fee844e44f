#!/usr/bin/env bash
# Installs what is missing, builds ZVCore and its demo product in release mode, and runs
# the demo, "Folder Lens". With a display it opens the demo's window; without one it draws
# the main window, the open title menu, the About dialog and the language dialog, in the
# light and dark skins and in English and Arabic, to PNG files and prints their paths.
#
# It builds against Qt 6 when Qt 6 is installed, or can be (as root), else against Qt 5:
# build/release-qt6 or build/release.
#
#   bash scripts/run.sh [demo arguments]      e.g. --skin dark, --language German
#   bash scripts/run.sh --qt 5 [arguments]    Qt 5 (likewise ZVCORE_QT_MAJOR=5)
#   ZV_SCREENSHOTS=<folder> bash scripts/run.sh   pictures even with a display
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"

if [ "${1:-}" = --qt ]; then
    ZVCORE_QT_MAJOR=${2:-}
    shift 2 || { echo "zvcore: --qt takes 5 or 6" >&2; exit 2; }
fi
major=$(zv_pick_qt)
read -r -a qt_packages <<< "$(zv_qt_packages "$major")"
zv_require "${ZV_BUILD_PACKAGES[@]}" "${qt_packages[@]}"

if [ "$major" = 5 ]; then build="$root/build/release"; else build="$root/build/release-qt$major"; fi
echo "==> Configuring $build (Qt $major; --qt 5 or --qt 6 picks one)"
cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
    -DCMAKE_BUILD_TYPE=Release -DZVCORE_DEVELOPER_BUILD=OFF -DZVCORE_BUILD_TESTS=OFF \
    -DZVCORE_BUILD_EXAMPLES=ON -DZVCORE_QT_MAJOR="$major" >/dev/null
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
