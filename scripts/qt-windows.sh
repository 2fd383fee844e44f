#!/usr/bin/env bash
# Builds Qt for 64-bit Windows (qtbase: Core, Gui, Widgets, Xml, Test, the "windows" and
# "offscreen" platform plugins and the "windowsvista" style) with the MinGW-w64 POSIX
# compilers, from Debian's source package of the same version as this machine's Qt, into
# a cache folder outside the source tree:
#
#   bash scripts/qt-windows.sh --qt 5|6 [--jobs N]
#
# The last line printed is the folder of that Qt (its prefix). A complete build is
# reused: the folder holds a stamp naming the source version and the options it was
# built with. A build runs beside the cache and takes its place only when installed
# whole, so a cut-short run never leaves a Qt that looks usable.
#
#   ZVCORE_QT_WINDOWS_CACHE   where the builds are kept
#                             (default ${XDG_CACHE_HOME:-~/.cache}/zvcore)
#
# Run as root, it installs the Debian packages it needs and adds the source entries
# apt-get source needs in a file of its own (/etc/apt/sources.list.d/zvcore-deb-src.sources);
# as another user it names what to install and stops. Qt's sources are Debian's,
# unmodified; ccache speeds up a rebuild when it is installed.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"

usage() {
    echo "usage: $0 --qt 5|6 [--jobs N]" >&2
    exit 2
}

major=
jobs=$(nproc)
while [ $# -gt 0 ]; do
    case $1 in
        --qt) major=${2:-}; shift 2 || usage ;;
        --qt=*) major=${1#--qt=}; shift ;;
        --jobs) jobs=${2:-}; shift 2 || usage ;;
        -h|--help) sed -n '2,20p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//'; exit 0 ;;
        *) usage ;;
    esac
done
[ "$major" = 5 ] || [ "$major" = 6 ] || usage

say() { echo "==> qt-windows: $*" >&2; }
fail() { echo "zvcore: qt-windows: $*" >&2; exit 1; }

if [ "$major" = 5 ]; then
    host_package=qtbase5-dev
    source_package=qtbase-opensource-src
    build_packages=(qtbase5-dev qtbase5-dev-tools)
else
    host_package=qt6-base-dev
    source_package=qt6-base
    # A cross build of Qt 6 runs the host's moc, rcc, uic and the other build tools of
    # the very same version.
    build_packages=(qt6-base-dev qt6-base-dev-tools)
fi
zv_require dpkg-dev perl python3 cmake ninja-build g++-mingw-w64-x86-64-posix "${build_packages[@]}"

version=$(dpkg-query -W -f='${Version}' "$host_package" 2>/dev/null) \
    || fail "$host_package is not installed"
upstream=${version#*:}
upstream=${upstream%%+*}
upstream=${upstream%%-*}

mingw_gcc=x86_64-w64-mingw32-gcc-posix
mingw_gxx=x86_64-w64-mingw32-g++-posix
compiler=$($mingw_gxx -dumpfullversion 2>/dev/null || $mingw_gxx -dumpversion)

# What the build depends on; a cached Qt built otherwise is not reused.
if [ "$major" = 5 ]; then
    options=(-xplatform win32-g++ -device-option CROSS_COMPILE=x86_64-w64-mingw32-
             -opensource -confirm-license -release -shared
             -nomake examples -nomake tests -no-opengl -no-dbus -no-icu
             -qt-zlib -qt-libpng -qt-libjpeg -qt-pcre -qt-harfbuzz -qt-freetype
             -no-feature-sql -no-feature-tabletevent)
else
    # Qt 6.4's Windows platform plugin does not compile with OpenGL turned off.
    options=(-DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON
             -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DQT_BUILD_BENCHMARKS=OFF
             -DFEATURE_dbus=OFF -DFEATURE_icu=OFF -DFEATURE_sql=OFF -DFEATURE_network=OFF
             -DFEATURE_printsupport=OFF -DFEATURE_tabletevent=OFF -DFEATURE_concurrent=OFF
             -DFEATURE_system_zlib=OFF -DFEATURE_system_png=OFF -DFEATURE_system_jpeg=OFF
             -DFEATURE_system_pcre2=OFF -DFEATURE_system_harfbuzz=OFF
             -DFEATURE_system_freetype=OFF -DFEATURE_system_doubleconversion=OFF
             -DINPUT_openssl=no -DFEATURE_zstd=OFF)
fi
stamp_text="source $source_package $version
compiler $mingw_gxx $compiler
options ${options[*]}"

cache=${ZVCORE_QT_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/zvcore}
prefix="$cache/qt$upstream-windows-mingw64"
stamp="$prefix/zvcore-qt.stamp"
if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$stamp_text" ]; then
    say "Qt $upstream for Windows is in the cache"
    echo "$prefix"
    exit 0
fi

started=$(date +%s)
elapsed() { local s=$(( $(date +%s) - started )); printf '%d min %02d s' $((s / 60)) $((s % 60)); }
say "building Qt $upstream ($source_package $version) for Windows into $prefix"
say "this takes about 15 minutes on two cores; later runs reuse the build"
mkdir -p "$cache"
work="$cache/qt$upstream-windows-mingw64.building"
rm -rf "$work"
mkdir -p "$work"

# The sources: Debian's source package of exactly the installed version.
fetch_source() {
    (cd "$work" && apt-get source -q --only-source "$source_package=$version") >"$work/source.log" 2>&1
}
if ! fetch_source; then
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-bookworm}")
    # apt refuses a source entry whose key setting differs from the binary entry of the
    # same archive, so the new entries take the key the system's own entries name.
    keyring=$(grep -hs '^Signed-By:' /etc/apt/sources.list.d/*.sources | head -n 1 | sed 's/^Signed-By:[[:space:]]*//' || true)
    if [ -n "$keyring" ]; then
        list=/etc/apt/sources.list.d/zvcore-deb-src.sources
        entries="Types: deb-src
URIs: http://deb.debian.org/debian
Suites: $codename $codename-updates
Components: main
Signed-By: $keyring

Types: deb-src
URIs: http://deb.debian.org/debian-security
Suites: $codename-security
Components: main
Signed-By: $keyring"
    else
        list=/etc/apt/sources.list.d/zvcore-deb-src.list
        entries="deb-src http://deb.debian.org/debian $codename main
deb-src http://deb.debian.org/debian $codename-updates main
deb-src http://deb.debian.org/debian-security $codename-security main"
    fi
    if [ "$(id -u)" -ne 0 ]; then
        cat "$work/source.log" >&2
        echo "zvcore: apt-get source found no $source_package $version; as root, write" >&2
        echo "$list with these lines:" >&2
        printf '%s\n' "$entries" | sed 's/^/    /' >&2
        echo "then run apt-get update and this command again." >&2
        exit 2
    fi
    say "adding Debian's source entries in $list"
    printf '%s\n' "$entries" >"$list"
    if ! apt-get update -q >"$work/update.log" 2>&1; then
        # A file apt cannot read would break every later apt-get on the machine.
        rm -f "$list"
        cat "$work/update.log" >&2
        fail "apt-get update failed with the source entries of $list; removed it again"
    fi
    fetch_source || { cat "$work/source.log" >&2; fail "apt-get source $source_package=$version failed"; }
fi
src=$(find "$work" -mindepth 1 -maxdepth 1 -type d -name "${source_package}-*" | head -n 1)
[ -n "$src" ] || fail "no source folder after apt-get source (see $work/source.log)"
say "sources ready in $src ($(elapsed))"

# The compilers under the names Qt's build looks for, through ccache when it is there.
tools="$work/tools"
mkdir -p "$tools"
launcher=
command -v ccache >/dev/null 2>&1 && launcher="ccache "
for pair in "gcc:$mingw_gcc" "g++:$mingw_gxx"; do
    printf '#!/bin/sh\nexec %s%s "$@"\n' "$launcher" "$(command -v "${pair#*:}")" \
        >"$tools/x86_64-w64-mingw32-${pair%%:*}"
    chmod +x "$tools/x86_64-w64-mingw32-${pair%%:*}"
done
export PATH="$tools:$PATH"

# Progress while the long step runs: a line every 30 seconds.
progress_pid=
start_progress() {
    local log=$1
    (
        while sleep 30; do
            if [ "$major" = 6 ]; then
                line=$(grep -ao '^\[[0-9]*/[0-9]*\]' "$log" | tail -n 1 || true)
                say "compiling ${line:-…} ($(elapsed))"
            else
                objects=$(find "$build" -name '*.o' 2>/dev/null | wc -l)
                say "compiling: $objects objects so far, about 1500 in all ($(elapsed))"
            fi
        done
    ) &
    progress_pid=$!
}
stop_progress() {
    if [ -n "$progress_pid" ]; then
        kill "$progress_pid" 2>/dev/null || true
        wait "$progress_pid" 2>/dev/null || true
    fi
    progress_pid=
}
trap stop_progress EXIT

run_logged() {
    local step=$1 log=$2
    shift 2
    start_progress "$log"
    if ! "$@" >"$log" 2>&1; then
        stop_progress
        tail -n 40 "$log" >&2
        fail "$step failed; the whole log is $log"
    fi
    stop_progress
}

partial="$prefix.partial"
rm -rf "$partial"
build="$work/build"
mkdir -p "$build"
if [ "$major" = 5 ]; then
    say "configuring"
    run_logged configure "$work/configure.log" \
        sh -c 'cd "$1" && shift && "$@"' _ "$build" "$src/configure" -prefix "$partial" "${options[@]}"
    say "building with $jobs jobs"
    run_logged make "$work/build.log" make -C "$build" -j "$jobs"
    say "installing"
    run_logged install "$work/install.log" make -C "$build" install
else
    # Qt 6 records the path of the toolchain file it was built with (its
    # qt.toolchain.cmake loads it); a copy in the cache outlives the source tree this
    # script ran from.
    toolchain="$cache/toolchains/mingw-w64-x86_64.cmake"
    mkdir -p "$cache/toolchains"
    cp "$root/cmake/toolchains/mingw-w64-x86_64.cmake" "$toolchain.new"
    mv "$toolchain.new" "$toolchain"
    launcher_opts=()
    [ -n "$launcher" ] && launcher_opts=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    say "configuring"
    run_logged configure "$work/configure.log" \
        cmake -S "$src" -B "$build" -G Ninja \
            "-DCMAKE_TOOLCHAIN_FILE=$toolchain" \
            -DQT_HOST_PATH=/usr "-DQT_HOST_PATH_CMAKE_DIR=$(zv_qt6_host_cmake_dir)" \
            "-DCMAKE_INSTALL_PREFIX=$partial" \
            "${launcher_opts[@]}" "${options[@]}"
    say "building with $jobs jobs"
    run_logged build "$work/build.log" cmake --build "$build" --parallel "$jobs"
    say "installing"
    run_logged install "$work/install.log" cmake --install "$build"
fi

for file in bin/Qt${major}Core.dll bin/Qt${major}Widgets.dll bin/Qt${major}Test.dll \
        plugins/platforms/qwindows.dll plugins/platforms/qoffscreen.dll \
        plugins/styles/qwindowsvistastyle.dll; do
    [ -f "$partial/$file" ] || fail "the build finished without $file"
done
printf '%s\n' "$stamp_text" >"$partial/zvcore-qt.stamp"
rm -rf "$prefix"
mv "$partial" "$prefix"
rm -rf "$work"
say "Qt $upstream for Windows built in $(elapsed): $prefix ($(du -sh "$prefix" | cut -f1))"
echo "$prefix"
