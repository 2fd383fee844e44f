#!/usr/bin/env bash
# Installs what is missing, builds the benchmarks in release mode (build/bench), runs
# every one of them timed, runs again those whose pieces can be counted instruction by
# instruction under valgrind's callgrind, and prints one table on standard output.
# Progress, one line per step, and the build's output go to standard error; each
# program's own messages go to build/bench/results/<program>.log.
#
#   bash scripts/bench.sh [--qt 5|6]   Qt 5 (build/bench) or Qt 6 (build/bench-qt6); the
#                                      default is Qt 6 when it is there, as for run.sh
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=deps.sh
. "$root/scripts/deps.sh"

if [ "${1:-}" = --qt ]; then
    ZVCORE_QT_MAJOR=${2:-}
    shift 2 || { echo "zvcore: --qt takes 5 or 6" >&2; exit 2; }
fi
major=$(zv_pick_qt)
read -r -a qt_packages <<< "$(zv_qt_packages "$major")"

# Standard output is for the table only.
zv_require "${ZV_BUILD_PACKAGES[@]}" "${qt_packages[@]}" valgrind >&2

if [ "$major" = 5 ]; then build="$root/build/bench"; else build="$root/build/bench-qt$major"; fi
echo "==> Configuring $build (Qt $major)" >&2
cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
    -DCMAKE_BUILD_TYPE=Release -DZVCORE_DEVELOPER_BUILD=ON -DZVCORE_BUILD_TESTS=OFF \
    -DZVCORE_BUILD_EXAMPLES=ON -DZVCORE_BUILD_BENCHMARKS=ON -DZVCORE_QT_MAJOR="$major" >/dev/null
echo "==> Building" >&2
cmake --build "$build" -j "$(nproc)" >&2

product="$build/bench/product"
results="$build/results"
rm -rf "$results"
mkdir -p "$results/callgrind"
export QT_QPA_PLATFORM=offscreen
export QT_LOGGING_RULES="qt.qpa.*=false"

# Timed: every program. Counted: the ones that measure pieces of one process (run whole
# under callgrind), and the start-up, which runs its hosts under callgrind itself. The
# crash path and resident memory are measured only.
timed=(rendershadow repaint startup language stylesheet crash threads memory)
counted=(rendershadow repaint language stylesheet)
steps=$(( ${#timed[@]} + ${#counted[@]} + 1 ))
step=0
progress() {
    step=$((step + 1))
    printf '[%2d/%d] %s\n' "$step" "$steps" "$*" >&2
}

load_before=$(cut -d' ' -f1-3 /proc/loadavg)
started=$SECONDS
order=0
for name in "${timed[@]}"; do
    progress "$name: timing ($((SECONDS - started)) s so far)"
    # Numbered, so that the table keeps this order.
    order=$((order + 1))
    if ! (cd "$product" && "./bench_$name" >"$results/$order-$name.rows" 2>"$results/bench_$name.log"); then
        echo "        bench_$name failed; see $results/bench_$name.log" >&2
    fi
done
for name in "${counted[@]}"; do
    progress "$name: counting instructions under callgrind ($((SECONDS - started)) s so far)"
    if ! (cd "$product" && valgrind --tool=callgrind \
            --callgrind-out-file="$results/callgrind/$name.%p" \
            "./bench_$name" >/dev/null 2>"$results/bench_$name.callgrind.log"); then
        echo "        bench_$name under callgrind failed; see $results/bench_$name.callgrind.log" >&2
    fi
done
progress "startup: counting instructions under callgrind ($((SECONDS - started)) s so far)"
if ! (cd "$product" && ZVBENCH_CALLGRIND_DIR="$results/callgrind" ./bench_startup >/dev/null \
        2>"$results/bench_startup.callgrind.log"); then
    echo "        bench_startup under callgrind failed; see $results/bench_startup.callgrind.log" >&2
fi
load_after=$(cut -d' ' -f1-3 /proc/loadavg)
echo "==> Done in $((SECONDS - started)) s; the table is also in $results/table.md" >&2

commit=$(git -C "$root" rev-parse --short HEAD 2>/dev/null || echo unknown)
if [ -n "$(git -C "$root" status --porcelain 2>/dev/null)" ]; then
    commit="$commit (with changes in the working tree)"
fi
"$build/bench/zvbench_report" "$results" --commit "$commit" --load "$load_before -> $load_after" \
    | tee "$results/table.md"
