#!/usr/bin/env bash
# The frame built for Windows with MinGW-w64 against Qt for Windows, and run under Wine.
#
#   bash scripts/windows.sh --qt 5|6 build            builds Qt for Windows when it is not
#                                                     cached (scripts/qt-windows.sh), the host
#                                                     tools, then the Windows build; the last
#                                                     line is its tree (the demo is in
#                                                     <tree>/demo, packed in
#                                                     <tree>/FolderLens-windows-qt<major>.zip)
#   bash scripts/windows.sh --qt 5|6 test [ctest args] builds, then runs the windows-qt lane:
#                                                     every unit test of the Windows build
#                                                     under Wine on a private Xvfb
#   bash scripts/windows.sh --qt 5|6 run [arguments]  builds, then starts the demo under Wine
#                                                     with these arguments, on $DISPLAY or,
#                                                     without one, on a private Xvfb
#
# Trees: build/windows-qt<major> (the Windows build, its Wine prefix in wineprefix/) and
# build/host-tools-qt<major> (zvcrypt and the picture maker for the host).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"

usage() {
    echo "usage: $0 --qt 5|6 build | test [ctest arguments] | run [demo arguments]" >&2
    exit 2
}

major=
while [ $# -gt 0 ]; do
    case $1 in
        --qt) major=${2:-}; shift 2 || usage ;;
        --qt=*) major=${1#--qt=}; shift ;;
        -h|--help) sed -n '2,19p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//'; exit 0 ;;
        *) break ;;
    esac
done
[ "$major" = 5 ] || [ "$major" = 6 ] || usage
[ $# -ge 1 ] || usage
command=$1
shift
case $command in build|test|run) ;; *) usage ;; esac

say() { echo "==> windows: $*" >&2; }

read -r -a qt_packages <<< "$(zv_qt_packages "$major")"
zv_require "${ZV_BUILD_PACKAGES[@]}" "${qt_packages[@]}" g++-mingw-w64-x86-64-posix \
    wine wine64 xvfb xauth
jobs=$(nproc)
generator=$(zv_cmake_generator)

# Everything a build step prints goes to the terminal's stderr, so that the last line on
# stdout is the tree.
build_all() {
    local qt
    qt=$(bash "$root/scripts/qt-windows.sh" --qt "$major" | tail -n 1)
    [ -d "$qt" ] || { echo "zvcore: windows: no Qt for Windows" >&2; exit 1; }

    local host="$root/build/host-tools-qt$major"
    say "host tools in $host"
    cmake -S "$root" -B "$host" -G "$generator" -DCMAKE_BUILD_TYPE=Release \
        -DZVCORE_QT_MAJOR="$major" -DZVCORE_DEVELOPER_BUILD=OFF >"$host.configure.log" 2>&1 \
        || { cat "$host.configure.log" >&2; echo "zvcore: windows: configuring $host failed" >&2; exit 1; }
    cmake --build "$host" --target zvcore-host-tools -j "$jobs" >&2

    local tree="$root/build/windows-qt$major"
    local extra=()
    [ "$major" = 6 ] && extra+=(-DQT_HOST_PATH=/usr)
    say "Windows build in $tree (Qt for Windows: $qt)"
    cmake -S "$root" -B "$tree" -G "$generator" \
        "-DCMAKE_TOOLCHAIN_FILE=$root/cmake/toolchains/mingw-w64-x86_64.cmake" \
        "-DCMAKE_PREFIX_PATH=$qt" "${extra[@]}" \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZVCORE_QT_MAJOR="$major" \
        -DZVCORE_DEVELOPER_BUILD=ON -DZVCORE_TEST_LABELS="unit;wine-display" \
        "-DZVCORE_HOST_TOOLS_DIR=$host" >"$tree.configure.log" 2>&1 \
        || { cat "$tree.configure.log" >&2; echo "zvcore: windows: configuring $tree failed" >&2; exit 1; }
    grep -E '^-- ZVCore: ' "$tree.configure.log" >&2 || true
    cmake --build "$tree" -j "$jobs" >&2
    cmake --build "$tree" --target zvcore-demo-zip >&2
    echo "$tree"
}

tree=$(build_all)

case $command in
    build)
        echo "$tree"
        ;;
    test)
        say "windows-qt lane (Qt $major): the tests of $tree under Wine"
        # The high-DPI case needs the 1920 x 1080 screen of its worked example.
        ZV_XVFB_SCREEN=1920x1080x24 exec sh "$root/tests/windows-lane/run-under-xvfb.sh" \
            ctest "$tree" "$tree/wineprefix" -L 'unit|wine-display' -j "$jobs" "$@"
        ;;
    run)
        exec sh "$root/tests/windows-lane/run-demo.sh" "$tree/wineprefix" "$tree/demo" \
            zvcore-demo.exe "$@"
        ;;
esac
