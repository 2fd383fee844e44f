#!/usr/bin/env bash
# Installs what is missing and runs every test lane. First the sanitizer lanes, each
# reported in one line:
#   asan+ubsan  build/san: the unit tests under AddressSanitizer and
#               UndefinedBehaviorSanitizer;
#   fuzz        build/san: each libFuzzer target for a short, fixed time;
#   tsan        build/tsan: the tests with threads under ThreadSanitizer.
# The sanitizer lanes build against Qt 5. Then the developer build
# (ZVCORE_DEVELOPER_BUILD=ON) and its whole test suite (unit, package, display and
# windows lanes) once per Qt major version: build/dev against Qt 5, build/dev-qt6
# against Qt 6, each ending with its ctest summary, Qt 6's last. Exits non-zero when any
# lane of any tree failed. Last the windows-qt lanes, once per Qt major version: the
# Windows build (scripts/windows.sh; Qt for Windows is built once per machine and cached,
# some 20 minutes for Qt 5 and 25 for Qt 6 on two cores) with every unit test under Wine,
# each ending with its ctest summary; a summary of every lane closes the run.
#
#   ZVCORE_SANITIZER_LANES=0   only the developer builds and their tests
#   ZVCORE_FUZZ_SECONDS=<n>    seconds per fuzz target (default 25)
#   ZVCORE_TEST_QT="5 6"       the Qt major versions whose developer build and windows-qt
#                              lane run (default both)
#   ZVCORE_WINDOWS_QT_LANES=0  no windows-qt lanes
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"
# shellcheck source=sanitizers.sh
. "$root/scripts/sanitizers.sh"

sanitizers=${ZVCORE_SANITIZER_LANES:-1}
read -r -a majors <<< "${ZVCORE_TEST_QT:-5 6}"
qt_packages=()
for major in "${majors[@]}"; do
    if [ "$major" != 5 ] && [ "$major" != 6 ]; then
        echo "zvcore: ZVCORE_TEST_QT names '$major': only 5 and 6 are Qt versions here" >&2
        exit 2
    fi
    read -r -a list <<< "$(zv_qt_packages "$major")"
    qt_packages+=("${list[@]}")
done
# The sanitizer builds use Qt 5.
if [ "$sanitizers" = 0 ]; then
    zv_require "${ZV_BUILD_PACKAGES[@]}" "${qt_packages[@]}" "${ZV_TEST_PACKAGES[@]}"
else
    zv_require "${ZV_BUILD_PACKAGES[@]}" "${qt_packages[@]}" "${ZV_QT5_PACKAGES[@]}" \
        "${ZV_TEST_PACKAGES[@]}" "${ZV_SANITIZER_PACKAGES[@]}"
fi
jobs=$(nproc)
# ccache finds the objects of another clone of the tree, or of this one moved: paths below
# the root are taken relative, and the build folder is not part of what it compares.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$root}"
export CCACHE_NOHASHDIR="${CCACHE_NOHASHDIR:-1}"

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

if [ ${#lane_lines[@]} -gt 0 ]; then
    echo "==> Sanitizer and fuzz lanes"
    printf '    %s\n' "${lane_lines[@]}"
fi

# The developer build of each Qt version, with its whole suite; benchmarks are run on
# demand, never here.
status=0
summaries=()
for major in "${majors[@]}"; do
    if [ "$major" = 5 ]; then build="$root/build/dev"; else build="$root/build/dev-qt$major"; fi
    echo "==> Configuring $build (Qt $major)"
    if ! cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
            -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZVCORE_DEVELOPER_BUILD=ON \
            -DZVCORE_QT_MAJOR="$major" | grep -E '^-- ZVCore: ' ; then
        echo "zvcore: configuring $build failed" >&2
        summaries+=("Qt $major  FAILED  configure")
        status=1
        continue
    fi
    echo "==> Building $build"
    if ! cmake --build "$build" -j "$jobs"; then
        summaries+=("Qt $major  FAILED  the build of $build failed")
        status=1
        continue
    fi
    if [ ${#summaries[@]} -gt 0 ]; then
        echo "==> Developer builds so far"
        printf '    %s\n' "${summaries[@]}"
    fi
    echo "==> Testing $build (Qt $major)"
    log="$build/Testing/suite.log"
    mkdir -p "$build/Testing"
    tree_status=0
    (cd "$build" && ctest --output-on-failure -j "$jobs" -LE bench) 2>&1 | tee "$log" || tree_status=1
    summary=$(grep -E 'tests passed|No tests were found' "$log" | tail -n 1 || true)
    if [ "$tree_status" -ne 0 ] || [ -z "$summary" ] || [[ "$summary" == *"No tests were found"* ]]; then
        status=1
        summaries+=("Qt $major  FAILED  ${summary:-ctest did not run}")
    else
        summaries+=("Qt $major  passed  $summary")
    fi
done
# The Windows build of each Qt version, under Wine.
windows_lines=()
if [ "${ZVCORE_WINDOWS_QT_LANES:-1}" != 0 ]; then
    for major in "${majors[@]}"; do
        echo "==> Lane windows-qt (Qt $major): the Windows build under Wine"
        log="$root/build/windows-qt$major.lane.log"
        mkdir -p "$root/build"
        lane_status=0
        bash "$root/scripts/windows.sh" --qt "$major" test 2>&1 | tee "$log" || lane_status=1
        summary=$(grep -E 'tests passed|No tests were found' "$log" | tail -n 1 || true)
        if [ "$lane_status" -ne 0 ] || [ -z "$summary" ] || [[ "$summary" == *"No tests were found"* ]]; then
            status=1
            windows_lines+=("windows-qt (Qt $major)  FAILED  ${summary:-the lane did not run}")
        else
            windows_lines+=("windows-qt (Qt $major)  passed  $summary")
        fi
    done
fi

echo "==> Summary"
printf '    %s\n' "${lane_lines[@]}" "${summaries[@]}" "${windows_lines[@]}"
if [ "$status" -eq 0 ] && [ "$lanes_failed" -ne 0 ]; then
    status=1
fi
exit "$status"
