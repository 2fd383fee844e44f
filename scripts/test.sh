#!/usr/bin/env bash
# Installs what is missing and runs every test lane. First the sanitizer lanes, each
# reported in one line:
#   asan+ubsan  build/san: the unit tests under AddressSanitizer and
#               UndefinedBehaviorSanitizer;
#   fuzz        build/san: each libFuzzer target for a short, fixed time;
#   tsan        build/tsan: the tests with threads under ThreadSanitizer.
# Then the developer build (build/dev, ZVCORE_DEVELOPER_BUILD=ON) and its whole test
# suite, whose ctest summary ends the output. Exits non-zero when any lane failed.
#
#   ZVCORE_SANITIZER_LANES=0   only the developer build and its tests
#   ZVCORE_FUZZ_SECONDS=<n>    seconds per fuzz target (default 25)
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"
# shellcheck source=sanitizers.sh
. "$root/scripts/sanitizers.sh"

sanitizers=${ZVCORE_SANITIZER_LANES:-1}
if [ "$sanitizers" = 0 ]; then
    zv_require "${ZV_BUILD_PACKAGES[@]}" "${ZV_TEST_PACKAGES[@]}"
else
    zv_require "${ZV_BUILD_PACKAGES[@]}" "${ZV_TEST_PACKAGES[@]}" "${ZV_SANITIZER_PACKAGES[@]}"
fi
jobs=$(nproc)

lane_lines=()
lanes_failed=0

# zv_lane_result <lane> <status> <text>
zv_lane_result() {
    lane_lines+=("$(printf '%-11s %-7s %s' "$1" "$2" "$3")")
    [ "$2" = passed ] || lanes_failed=1
}

# zv_build <lane...> -- <build dir>: builds, or records every lane of the tree as failed.
zv_build() {
    local lanes=()
    while [ "$1" != -- ]; do lanes+=("$1"); shift; done
    local build=$2
    echo "==> Building $build"
    if cmake --build "$build" -j "$jobs"; then
        return 0
    fi
    local lane
    for lane in "${lanes[@]}"; do
        zv_lane_result "$lane" FAILED "the build of $build failed"
    done
    return 1
}

# zv_lane <lane> <build dir> <ctest arguments...>
zv_lane() {
    local lane=$1 build=$2
    shift 2
    echo "==> Lane $lane ($build: ctest $*)"
    local log="$build/Testing/lane-$lane.log"
    mkdir -p "$build/Testing"
    local status=passed
    (cd "$build" && ctest --output-on-failure -j "$jobs" "$@") 2>&1 | tee "$log" || status=FAILED
    local summary
    summary=$(grep -E 'tests passed|No tests were found' "$log" | tail -n 1 || true)
    # A lane that runs nothing has not passed.
    if [ -z "$summary" ] || [[ "$summary" == *"No tests were found"* ]]; then
        status=FAILED
        summary=${summary:-"ctest did not run"}
    fi
    zv_lane_result "$lane" "$status" "$summary"
}

if [ "$sanitizers" != 0 ]; then
    san="$root/build/san"
    echo "==> Configuring $san (clang, AddressSanitizer, UndefinedBehaviorSanitizer, libFuzzer)"
    zv_configure_san "$san" "-DZVCORE_FUZZ_SECONDS=${ZVCORE_FUZZ_SECONDS:-25}"
    if zv_build asan+ubsan fuzz -- "$san"; then
        zv_lane asan+ubsan "$san" -L unit
        zv_lane fuzz "$san" -L fuzz
    fi

    tsan="$root/build/tsan"
    echo "==> Configuring $tsan (clang, ThreadSanitizer)"
    zv_configure_tsan "$tsan"
    if zv_build tsan -- "$tsan"; then
        zv_lane tsan "$tsan" -L threads
    fi
fi

build="$root/build/dev"
echo "==> Configuring $build"
cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZVCORE_DEVELOPER_BUILD=ON >/dev/null
echo "==> Building"
cmake --build "$build" -j "$jobs"

if [ ${#lane_lines[@]} -gt 0 ]; then
    echo "==> Sanitizer and fuzz lanes"
    printf '    %s\n' "${lane_lines[@]}"
fi
echo "==> Testing"
# Benchmarks are run on demand, never here.
cd "$build"
status=0
ctest --output-on-failure -j "$jobs" -LE bench || status=$?
if [ "$status" -eq 0 ] && [ "$lanes_failed" -ne 0 ]; then
    status=1
fi
exit "$status"
