# Configures tests/windows with the MinGW-w64 toolchain and builds it, one step after the
# other. The build directory is kept between runs, so that a second run only rebuilds
# what changed.
#
#   cmake -DLANE_SOURCE=<dir> -DLANE_BUILD=<dir> -DTOOLCHAIN=<file> -DGENERATOR=<name>
#         [-DMAKE_PROGRAM=<path>] [-DLAUNCHER=<ccache>] -P build-lane.cmake
cmake_minimum_required(VERSION 3.18)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        string(REPLACE ";" " " line "${ARGN}")
        message(FATAL_ERROR "failed (${rc}): ${line}")
    endif()
endfunction()

foreach(var LANE_SOURCE LANE_BUILD TOOLCHAIN GENERATOR)
    if(NOT ${var})
        message(FATAL_ERROR "build-lane.cmake needs -D${var}=...")
    endif()
endforeach()

# A cache from another source tree or toolchain cannot be reused.
if(EXISTS "${LANE_BUILD}/CMakeCache.txt")
    file(STRINGS "${LANE_BUILD}/CMakeCache.txt" home REGEX "^CMAKE_HOME_DIRECTORY:[A-Z]+=")
    file(STRINGS "${LANE_BUILD}/CMakeCache.txt" chain REGEX "^CMAKE_TOOLCHAIN_FILE:[A-Z]+=")
    string(REGEX REPLACE "^[^=]*=" "" home "${home}")
    string(REGEX REPLACE "^[^=]*=" "" chain "${chain}")
    get_filename_component(source_real "${LANE_SOURCE}" REALPATH)
    get_filename_component(home_real "${home}" REALPATH)
    if(NOT home_real STREQUAL source_real OR NOT chain STREQUAL TOOLCHAIN)
        message(STATUS "windows lane: ${LANE_BUILD} belongs to another configuration; starting afresh")
        file(REMOVE_RECURSE "${LANE_BUILD}")
    endif()
endif()

set(extra)
if(MAKE_PROGRAM)
    list(APPEND extra "-DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM}")
endif()
if(LAUNCHER)
    list(APPEND extra "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}")
endif()
run("${CMAKE_COMMAND}" -S "${LANE_SOURCE}" -B "${LANE_BUILD}" -G "${GENERATOR}"
    "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}" -DCMAKE_BUILD_TYPE=RelWithDebInfo ${extra})
# Two jobs at most: the machines this runs on have two cores, and other tests may run
# beside it.
run("${CMAKE_COMMAND}" --build "${LANE_BUILD}" --parallel 2)
message(STATUS "windows lane: built in ${LANE_BUILD}")
