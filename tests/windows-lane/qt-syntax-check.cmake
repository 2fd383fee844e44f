# Compiles the library's Windows branches that need Qt for syntax only, with MinGW-w64
# against the Linux Qt headers: there is no Qt for Windows to link against here, but the
# headers are the same apart from the configuration, and Q_OS_WIN follows the compiler.
#
#   cmake -DCONFIG=<qt-syntax-<config>.cmake> -P qt-syntax-check.cmake
#
# The files are found when the test runs, so that a new *_win.cpp, or a file that gains
# a Q_OS_WIN branch, is checked without a reconfigure: every src/<library>/**.cpp whose
# name ends in _win.cpp or whose text contains Q_OS_WIN.
cmake_minimum_required(VERSION 3.18)

if(NOT CONFIG OR NOT EXISTS "${CONFIG}")
    message(FATAL_ERROR "qt-syntax-check.cmake needs -DCONFIG=<the file the build generated>")
endif()
include("${CONFIG}")

find_program(MINGW_CXX x86_64-w64-mingw32-g++-posix)
if(NOT MINGW_CXX)
    message(FATAL_ERROR "x86_64-w64-mingw32-g++-posix not found")
endif()

file(GLOB_RECURSE candidates LIST_DIRECTORIES false "${SOURCE_DIR}/src/*.cpp")
list(SORT candidates)
set(files)
foreach(file IN LISTS candidates)
    if(file MATCHES "_win\\.cpp$")
        list(APPEND files "${file}")
    else()
        file(READ "${file}" text)
        string(FIND "${text}" "Q_OS_WIN" at)
        if(NOT at EQUAL -1)
            list(APPEND files "${file}")
        endif()
    endif()
endforeach()
if(NOT files)
    message(FATAL_ERROR "no Windows sources under ${SOURCE_DIR}/src: the search is broken")
endif()

set(common -fsyntax-only -std=c++17 -Wall -Wextra
    # The Linux Qt headers declare their exports for ELF visibility; under a Windows
    # compiler that becomes dllimport, and redeclarations without it warn by the hundred.
    -Wno-attributes)
foreach(dir IN LISTS SYSTEM_INCLUDE_DIRS)
    list(APPEND common -isystem "${dir}")
endforeach()
foreach(dir IN LISTS INCLUDE_DIRS)
    list(APPEND common "-I${dir}")
endforeach()

set(failed)
set(count 0)
foreach(file IN LISTS files)
    file(RELATIVE_PATH relative "${SOURCE_DIR}" "${file}")
    # The library is the folder below src/; its target's definitions and include
    # folders are the ones the real build uses.
    string(REGEX REPLACE "^src/([^/]+)/.*" "\\1" library "${relative}")
    if(NOT DEFINED DEFINITIONS_${library})
        set(library ZVCore)
    endif()
    set(flags ${common})
    # A target may name the host's system folder (for RapidJSON); for MinGW that would
    # put the Linux C library before its own.
    set(dirs ${INCLUDE_DIRS_${library}})
    list(FILTER dirs EXCLUDE REGEX "^/usr(/local)?/include/?$")
    foreach(dir IN LISTS dirs)
        list(APPEND flags "-I${dir}")
    endforeach()
    foreach(definition IN LISTS DEFINITIONS_${library})
        list(APPEND flags "-D${definition}")
    endforeach()

    message(STATUS "${relative} (${library})")
    execute_process(COMMAND "${MINGW_CXX}" ${flags} "${file}"
        WORKING_DIRECTORY "${SOURCE_DIR}"
        RESULT_VARIABLE rc)
    math(EXPR count "${count} + 1")
    if(NOT rc EQUAL 0)
        list(APPEND failed "${relative}")
    endif()
endforeach()

if(failed)
    string(REPLACE ";" "\n  " list "${failed}")
    message(FATAL_ERROR "MinGW-w64 rejects the Windows branches of:\n  ${list}")
endif()
message(STATUS "${count} Windows sources pass a MinGW-w64 syntax check against the Qt headers")
