#!/bin/sh
# Runs the Windows lane's tests (the ctest of a built tests/windows) under Wine, on a
# private X server that lives exactly as long as this script.
#
#   run-under-xvfb.sh <ctest> <lane build dir> <wine prefix> [ctest arguments...]
#
#   ZV_XVFB_SCREEN   the screen, e.g. 1920x1080x24 (default 1280x1024x24)
#
# Exits with 77 (reported by ctest as skipped) when Wine or MinGW-w64 is missing.
# The prefix is created on first use; a prefix whose creation did not finish is made
# anew. Xvfb and the prefix's wineserver are stopped at the end, also on failure.
set -u

skip=77
if [ $# -lt 3 ]; then
    echo "usage: $0 <ctest> <lane build dir> <wine prefix> [ctest arguments...]" >&2
    exit 2
fi
ctest=$1
lane=$2
prefix=$3
shift 3

missing=
command -v x86_64-w64-mingw32-g++-posix >/dev/null 2>&1 || missing="$missing g++-mingw-w64-x86-64-posix"
command -v wine >/dev/null 2>&1 || missing="$missing wine wine64"
if [ -n "$missing" ]; then
    echo "SKIPPED: the Windows lane needs MinGW-w64 and Wine; not installed:$missing" >&2
    echo "         (scripts/deps.sh installs them with the test packages)" >&2
    exit $skip
fi
if ! command -v Xvfb >/dev/null 2>&1; then
    echo "Xvfb is not installed (Debian package xvfb)" >&2
    exit 1
fi
if [ ! -f "$lane/CTestTestfile.cmake" ]; then
    echo "the Windows lane is not built in $lane (the test windows.lane.build does that)" >&2
    exit 1
fi

# Wine wants an absolute prefix.
case $prefix in /*) ;; *) prefix="$(pwd)/$prefix" ;; esac
export WINEPREFIX="$prefix"
export WINEDEBUG=-all
# No Mono and no Gecko: without this the first start offers to download them.
export WINEDLLOVERRIDES="mscoree,mshtml="
unset WINEARCH WINESERVER WINELOADER

work=$(mktemp -d "${TMPDIR:-/tmp}/zvwinlane.XXXXXX") || exit 1
xvfb_pid=
prefix_used=
cleanup() {
    # Only what this script started: the prefix's wineserver and our own X server.
    if [ -n "$prefix_used" ]; then
        wineserver -k >/dev/null 2>&1
        wineserver -w >/dev/null 2>&1
    fi
    if [ -n "$xvfb_pid" ]; then
        kill "$xvfb_pid" 2>/dev/null
        wait "$xvfb_pid" 2>/dev/null
    fi
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# shellcheck source=wineprefix.sh
. "$(dirname "$0")/wineprefix.sh"
# The screen is ZV_XVFB_SCREEN (width x height x depth) when set.
zv_start_xvfb "$work" "${ZV_XVFB_SCREEN:-1280x1024x24}" || exit 1
echo "Xvfb on $DISPLAY (pid $xvfb_pid), WINEPREFIX=$WINEPREFIX"

prefix_used=1
zv_wine_prefix "$work" || exit 1

# One server for the whole run: without it each test program would start a server and
# the session's services anew. The cleanup above stops it.
wineserver -p
wine cmd /c exit >/dev/null 2>&1

"$ctest" --test-dir "$lane" --output-on-failure "$@"
rc=$?
exit $rc
