#!/bin/sh
# Runs one fuzz target for a fixed time, from the kept seed corpus and the kept
# regression inputs, and fails when libFuzzer reports anything (crash, failed check,
# leak, timeout, out-of-memory).
#
#   run-fuzzer.sh <fuzzer> <seconds> <work dir> <dictionary> <max_len> <seed dir>...
#
# New inputs go to <work dir>/corpus, which is emptied first (so a run starts from the
# kept corpus alone) unless ZVFUZZ_KEEP_CORPUS=1; findings go to <work dir>/artefacts.
# The seed directories are only read. Extra libFuzzer flags: ZVFUZZ_FLAGS.
set -eu
fuzzer=$1
seconds=$2
work=$3
dict=$4
max_len=$5
shift 5
here=$(cd "$(dirname "$0")" && pwd)

# The sanitizers report and end the process; libFuzzer keeps the input. Leaks are
# checked after every input that allocated more than it freed. The suppressions name
# leaks that are not the library's, each with its reason.
# Debian's llvm-14 has llvm-symbolizer in PATH only under a versioned name.
symbolizer=
for s in /usr/lib/llvm-14/bin/llvm-symbolizer "$(command -v llvm-symbolizer || true)"; do
    if [ -n "$s" ] && [ -x "$s" ]; then
        symbolizer=":external_symbolizer_path=$s"
        break
    fi
done
: "${ASAN_OPTIONS:=detect_leaks=1$symbolizer}"
: "${LSAN_OPTIONS:=suppressions=$here/../sanitizers/lsan.supp:print_suppressions=0}"
: "${UBSAN_OPTIONS:=print_stacktrace=1:halt_on_error=1$symbolizer}"
export ASAN_OPTIONS LSAN_OPTIONS UBSAN_OPTIONS

if [ "${ZVFUZZ_KEEP_CORPUS:-0}" != 1 ]; then
    rm -rf "$work/corpus"
fi
mkdir -p "$work/corpus" "$work/artefacts"

seeds=
for dir in "$@"; do
    [ -d "$dir" ] && seeds="$seeds $dir"
done

# -timeout: one input running longer is a hang. -rss_limit_mb: the library must not need
# more than this for any input of max_len bytes. -error_exitcode: leaks and failed checks
# alike fail the test.
# shellcheck disable=SC2086
exec "$fuzzer" \
    -max_total_time="$seconds" \
    -timeout=10 \
    -rss_limit_mb=2048 \
    -max_len="$max_len" \
    -dict="$dict" \
    -print_final_stats=1 \
    -artifact_prefix="$work/artefacts/" \
    ${ZVFUZZ_FLAGS:-} \
    "$work/corpus" $seeds
