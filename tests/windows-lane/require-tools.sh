#!/bin/sh
# Runs a command when the programs it needs are installed; otherwise says which are
# missing and exits with 77, which the windows tests report as skipped.
#
#   require-tools.sh <program>... -- <command> [arguments...]
set -u

missing=
while [ $# -gt 0 ] && [ "$1" != "--" ]; do
    command -v "$1" >/dev/null 2>&1 || missing="$missing $1"
    shift
done
if [ $# -eq 0 ]; then
    echo "usage: $0 <program>... -- <command> [arguments...]" >&2
    exit 2
fi
shift
if [ -n "$missing" ]; then
    echo "SKIPPED: not installed:$missing" >&2
    echo "         (Debian packages g++-mingw-w64-x86-64-posix, wine and wine64; scripts/deps.sh installs them)" >&2
    exit 77
fi
exec "$@"
