#!/bin/sh
# Opens the minidumps that the Windows lane's crash cases left behind with lldb, which
# must load each one, name one thread with the exception, and show its frames.
#
#   check-dumps.sh <runs folder> <case>...
#
# Exits with 77 (reported by ctest as skipped) when lldb is missing or the lane did not run.
set -u
if [ $# -lt 2 ]; then
    echo "usage: $0 <runs folder> <case>..." >&2
    exit 2
fi
runs=$1
shift
if [ ! -d "$runs" ]; then
    echo "SKIPPED: the Windows lane did not run here ($runs does not exist)" >&2
    exit 77
fi
if ! command -v lldb >/dev/null 2>&1; then
    echo "SKIPPED: lldb is not installed (Debian package lldb)" >&2
    exit 77
fi
status=0
for case in "$@"; do
    dump="$runs/$case/crashcore.dmp"
    if [ ! -f "$dump" ]; then
        echo "$case: no dump at $dump" >&2
        status=1
        continue
    fi
    out=$(lldb --batch --core "$dump" -o "bt all" 2>/dev/null)
    stops=$(printf '%s\n' "$out" | grep -c 'stop reason = Exception')
    if printf '%s\n' "$out" | grep -q 'was loaded' && [ "$stops" -eq 1 ] \
        && printf '%s\n' "$out" | grep -q 'frame #0'; then
        echo "$case: $(printf '%s\n' "$out" | grep -m1 'stop reason')"
    else
        echo "$case: lldb did not read the dump:" >&2
        printf '%s\n' "$out" >&2
        status=1
    fi
done
exit $status
