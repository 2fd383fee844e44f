# shellcheck shell=bash
# Sourced by test.sh and fuzz.sh (after deps.sh, with $root set): the sanitizer builds.
#
#   build/san   clang, AddressSanitizer + UndefinedBehaviorSanitizer, and the libFuzzer
#               targets: the "unit" lane and the "fuzz" lane share this one build, since
#               libraries instrumented for fuzzing (-fsanitize=fuzzer-no-link) serve the
#               unit tests as well.
#   build/tsan  clang, ThreadSanitizer: the "threads" lane, the tests in which threads
#               meet (crash handler, analytics spool).
#
# Neither builds the examples nor the programs of the display, windows and package
# lanes (ZVCORE_TEST_LABELS). Both build against Qt 5.

# clang and its runtimes (the sanitizers, libFuzzer), and llvm-symbolizer for reports.
# shellcheck disable=SC2034 # used by the scripts that source this one
ZV_SANITIZER_PACKAGES=(clang-14 libclang-rt-14-dev llvm-14)
ZV_CLANG=clang++-14

zv_configure_san() {
    local build=$1
    shift
    cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER="$ZV_CLANG" \
        -DZVCORE_DEVELOPER_BUILD=ON -DZVCORE_BUILD_EXAMPLES=OFF -DZVCORE_QT_MAJOR=5 \
        -DZVCORE_SANITIZE=address,undefined -DZVCORE_BUILD_FUZZERS=ON \
        "-DZVCORE_TEST_LABELS=unit;fuzz" "$@" >/dev/null
}

zv_configure_tsan() {
    local build=$1
    shift
    cmake -S "$root" -B "$build" -G "$(zv_cmake_generator)" \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER="$ZV_CLANG" \
        -DZVCORE_DEVELOPER_BUILD=ON -DZVCORE_BUILD_EXAMPLES=OFF -DZVCORE_QT_MAJOR=5 \
        -DZVCORE_SANITIZE=thread -DZVCORE_TEST_LABELS=threads "$@" >/dev/null
}
