#!/usr/bin/env bash
# Fuzzes the library's file parsers for longer than the fuzz lane does.
#
#   bash scripts/fuzz.sh [seconds] [target...]
#
# Builds the fuzz targets in build/san (the tree of the test command's sanitizer lanes)
# and runs each (all by default: productinfo localconfig linkfile titlemenu stylesheet
# csimplecrypt channelmarker savedlanguage) for <seconds> (default 60), one after the
# other, from the kept seeds (tests/fuzz/corpus/<target>) and regression inputs
# (tests/fuzz/regressions/<target>). What a target learns is kept across runs in
# build/san/tests/fuzz/work/<target>/corpus. A finding (crash, failed check, leak,
# timeout, out-of-memory) is saved in build/san/tests/fuzz/work/<target>/artefacts and
# makes the command fail. Extra libFuzzer flags go in ZVFUZZ_FLAGS, e.g.
# ZVFUZZ_FLAGS="-jobs=2 -workers=2".
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"
# shellcheck source=sanitizers.sh
. "$root/scripts/sanitizers.sh"

seconds=60
if [ $# -gt 0 ] && [[ "$1" =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    targets=(productinfo localconfig linkfile titlemenu stylesheet csimplecrypt channelmarker savedlanguage)
fi

zv_require "${ZV_BUILD_PACKAGES[@]}" "${ZV_QT5_PACKAGES[@]}" "${ZV_SANITIZER_PACKAGES[@]}"

san="$root/build/san"
echo "==> Configuring $san"
zv_configure_san "$san"
fuzzers=()
for t in "${targets[@]}"; do
    fuzzers+=("fuzz_$t")
done
echo "==> Building ${fuzzers[*]}"
cmake --build "$san" -j "$(nproc)" --target "${fuzzers[@]}"

failed=()
for t in "${targets[@]}"; do
    echo "==> fuzz_$t for $seconds s"
    if ! ZVFUZZ_KEEP_CORPUS=1 sh "$san/tests/fuzz/fuzz-$t.sh" "$seconds"; then
        failed+=("$t")
    fi
done

echo "==> Findings"
status=0
for t in "${targets[@]}"; do
    artefacts="$san/tests/fuzz/work/$t/artefacts"
    count=$(find "$artefacts" -type f 2>/dev/null | wc -l)
    if [[ " ${failed[*]} " == *" $t "* ]]; then
        echo "    $t: FAILED, inputs in $artefacts"
        status=1
    else
        echo "    $t: none ($count earlier inputs in $artefacts)"
    fi
done
exit "$status"
