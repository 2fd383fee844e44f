# Sanitizer and fuzzer builds.
#
#   ZVCORE_SANITIZE         the -fsanitize= list for the whole tree, e.g. "address,undefined"
#                           or "thread"; empty (the default) builds without sanitizers.
#                           With "undefined" every finding ends the process
#                           (-fno-sanitize-recover), so that a test cannot pass over it.
#   ZVCORE_BUILD_FUZZERS    builds the libFuzzer targets of tests/fuzz (clang only) and
#                           instruments the libraries for them (-fsanitize=fuzzer-no-link).
#                           Combine it with ZVCORE_SANITIZE=address,undefined: one tree
#                           then serves both the fuzz lane and the sanitized unit tests,
#                           which ignore the coverage hooks.
#   ZVCORE_TEST_LABELS      the test lanes (CTest labels) this tree builds and registers;
#                           empty means all. A sanitizer tree has no use for the display,
#                           windows and package lanes, whose programs would be built for
#                           nothing: "unit" (plus "fuzz"), or "threads" for ThreadSanitizer.
#
# ZVCORE_SANITIZER_ENVIRONMENT holds the run-time options that every test of such a tree
# gets (see tests/sanitizers/).

set(ZVCORE_SANITIZE "" CACHE STRING "-fsanitize= list for the whole tree (address,undefined | thread), empty for none")
option(ZVCORE_BUILD_FUZZERS "Build the libFuzzer targets (clang) and instrument the libraries for them" OFF)
set(ZVCORE_TEST_LABELS "" CACHE STRING "Test lanes (CTest labels) to build and register; empty for all")

set(ZVCORE_SANITIZER_ENVIRONMENT "")

if(ZVCORE_SANITIZE)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang|GNU")
        message(FATAL_ERROR "ZVCORE_SANITIZE needs clang or gcc")
    endif()
    if(ZVCORE_SANITIZE MATCHES "thread" AND ZVCORE_SANITIZE MATCHES "address")
        message(FATAL_ERROR "ZVCORE_SANITIZE: thread and address sanitizers cannot be combined")
    endif()
    # Frame pointers give the sanitizers' fast unwinder whole stacks.
    add_compile_options(-fsanitize=${ZVCORE_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ZVCORE_SANITIZE})
    set(supp "${PROJECT_SOURCE_DIR}/tests/sanitizers")
    if(ZVCORE_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
        if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
            add_compile_options("-fsanitize-ignorelist=${supp}/ubsan-ignorelist.txt")
        endif()
    endif()
    # The library installs a handler for the crash signals, and the crash tests check
    # what it does and that the process then dies by the signal. The sanitizers leave
    # those signals to the program: handle_*=0 keeps their own reporting handlers out,
    # allow_user_segv_handler lets the library's sigaction() through. Memory errors are
    # still found by the instrumentation; only a plain fault in some other test is then
    # reported by the test's death rather than by a sanitizer stack trace.
    set(crash "handle_segv=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0:handle_abort=0:allow_user_segv_handler=1")
    # Reports name functions and lines through llvm-symbolizer; Debian's llvm-14 has it
    # only under a versioned name in PATH.
    find_program(ZVCORE_LLVM_SYMBOLIZER llvm-symbolizer HINTS /usr/lib/llvm-14/bin)
    if(ZVCORE_LLVM_SYMBOLIZER)
        string(APPEND crash ":external_symbolizer_path=${ZVCORE_LLVM_SYMBOLIZER}")
    endif()
    if(ZVCORE_SANITIZE MATCHES "address")
        # detect_leaks: LeakSanitizer runs at every exit. The suppressions name only
        # leaks that are not ours, each with its reason.
        list(APPEND ZVCORE_SANITIZER_ENVIRONMENT
            "ASAN_OPTIONS=${crash}:detect_leaks=1:detect_stack_use_after_return=1:check_initialization_order=1:strict_init_order=1"
            "LSAN_OPTIONS=suppressions=${supp}/lsan.supp:print_suppressions=0")
    endif()
    if(ZVCORE_SANITIZE MATCHES "undefined")
        list(APPEND ZVCORE_SANITIZER_ENVIRONMENT "UBSAN_OPTIONS=${crash}:print_stacktrace=1:halt_on_error=1")
    endif()
    if(ZVCORE_SANITIZE MATCHES "thread")
        list(APPEND ZVCORE_SANITIZER_ENVIRONMENT
            "TSAN_OPTIONS=${crash}:halt_on_error=1:second_deadlock_stack=1:suppressions=${supp}/tsan.supp")
    endif()
endif()

if(ZVCORE_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "ZVCORE_BUILD_FUZZERS needs clang (libFuzzer), e.g. -DCMAKE_CXX_COMPILER=clang++-14")
    endif()
    if(NOT ZVCORE_DEVELOPER_BUILD)
        message(FATAL_ERROR "ZVCORE_BUILD_FUZZERS needs ZVCORE_DEVELOPER_BUILD=ON: the targets call internal classes.")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Whether a test of the lanes \a labels belongs to this tree.
function(zv_lane_enabled out)
    set(enabled TRUE)
    if(ZVCORE_TEST_LABELS)
        set(enabled FALSE)
        foreach(label IN LISTS ARGN)
            if(label IN_LIST ZVCORE_TEST_LABELS)
                set(enabled TRUE)
            endif()
        endforeach()
    endif()
    set(${out} ${enabled} PARENT_SCOPE)
endfunction()
