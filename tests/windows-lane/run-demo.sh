#!/bin/sh
# Starts a program of the Windows build under Wine, in its own folder, on $DISPLAY or,
# when there is none, on a private Xvfb that lives as long as the program.
#
#   run-demo.sh <wine prefix> <folder> <program.exe> [arguments...]
#
# The prefix is the one the windows-qt lane uses (created by run-under-xvfb.sh when
# missing). Nothing else is set: the folder must hold what the program needs.
set -u
if [ $# -lt 3 ]; then
    echo "usage: $0 <wine prefix> <folder> <program.exe> [arguments...]" >&2
    exit 2
fi
prefix=$1
folder=$2
program=$3
shift 3
here=$(cd "$(dirname "$0")" && pwd)

case $prefix in /*) ;; *) prefix="$(pwd)/$prefix" ;; esac
export WINEPREFIX="$prefix"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
unset WINEPATH

xvfb_pid=
work=
cleanup() {
    wineserver -k >/dev/null 2>&1
    if [ -n "$xvfb_pid" ]; then
        kill "$xvfb_pid" 2>/dev/null
        wait "$xvfb_pid" 2>/dev/null
    fi
    [ -n "$work" ] && rm -rf "$work"
}
# shellcheck source=wineprefix.sh
. "$here/wineprefix.sh"
if [ -z "${DISPLAY:-}" ]; then
    work=$(mktemp -d "${TMPDIR:-/tmp}/zvwindemo.XXXXXX") || exit 1
    zv_start_xvfb "$work" 1920x1080x24 || { cleanup; exit 1; }
    echo "no display: the program runs on a private Xvfb, $DISPLAY" >&2
fi
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
mkdir -p "$prefix"
scratch=$(mktemp -d "${TMPDIR:-/tmp}/zvwinprefix.XXXXXX") || exit 1
zv_wine_prefix "$scratch" >&2 || exit 1
rm -rf "$scratch"
cd "$folder" || exit 1
wine "./$program" "$@"
