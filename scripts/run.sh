#!/usr/bin/env bash
# Installs what is missing, builds ZVCore in release mode and runs the main program.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"

zv_require "${ZV_BUILD_PACKAGES[@]}"

build="$root/build/release"
echo "==> Configuring $build"
cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
    -DCMAKE_BUILD_TYPE=Release -DZVCORE_DEVELOPER_BUILD=OFF -DZVCORE_BUILD_TESTS=OFF >/dev/null
echo "==> Building"
cmake --build "$build" -j "$(nproc)"
echo "==> Running zvcore-info"
exec "$build/bin/zvcore-info"
