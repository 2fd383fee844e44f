#!/usr/bin/env bash
# Installs what is missing, builds ZVCore with ZVCORE_DEVELOPER_BUILD=ON and runs the
# whole test suite. Ends with ctest's summary; exits non-zero when any test fails.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"

zv_require "${ZV_BUILD_PACKAGES[@]}" "${ZV_TEST_PACKAGES[@]}"

build="$root/build/dev"
echo "==> Configuring $build"
cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZVCORE_DEVELOPER_BUILD=ON >/dev/null
echo "==> Building"
cmake --build "$build" -j "$(nproc)"
echo "==> Testing"
# Benchmarks are run on demand, never here.
cd "$build"
exec ctest --output-on-failure -j "$(nproc)" -LE bench
