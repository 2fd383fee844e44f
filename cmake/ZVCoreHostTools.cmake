# The programs the build runs: lrelease, zvcrypt (enciphers the sample products' link
# files) and the picture maker (draws the skins' pictures). A native build makes them
# itself; a cross build (Windows from Linux) cannot run what it makes, so it takes them
# from the host, the usual way:
#
#   ZVCORE_HOST_TOOLS_DIR  a native build tree of this project, whose target
#                          zvcore-host-tools is built; it exports the two programs in
#                          ZVCoreHostToolsConfig.cmake
#   ZVCORE_HOST_LRELEASE   the host's lrelease of the same Qt major version (found in
#                          /usr/lib/qt<major>/bin or on PATH when not set)
#
# Afterwards ${ZVCORE_QT}::lrelease is a target in both kinds of build, and in a cross
# build ZVCORE_HOST_ZVCRYPT and ZVCORE_HOST_MAKEPICTURES name the host's programs.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(${ZVCORE_QT} ${ZVCORE_QT_MIN_VERSION} REQUIRED COMPONENTS LinguistTools)
    return()
endif()

set(ZVCORE_HOST_TOOLS_DIR "" CACHE PATH "Native build tree of ZVCore that provides zvcrypt and the picture maker")
find_package(ZVCoreHostTools CONFIG QUIET
    PATHS "${ZVCORE_HOST_TOOLS_DIR}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(NOT ZVCoreHostTools_FOUND)
    message(FATAL_ERROR "ZVCore: a cross build runs zvcrypt and the picture maker of a native "
        "build. Configure this project natively, build its target zvcore-host-tools, and "
        "pass that build folder as -DZVCORE_HOST_TOOLS_DIR=<folder> "
        "(now: '${ZVCORE_HOST_TOOLS_DIR}').")
endif()
set(ZVCORE_HOST_ZVCRYPT "$<TARGET_FILE:ZVCoreHostTools::zvcrypt>")
set(ZVCORE_HOST_MAKEPICTURES "$<TARGET_FILE:ZVCoreHostTools::makepictures>")

find_program(ZVCORE_HOST_LRELEASE lrelease
    HINTS /usr/lib/qt${QT_VERSION_MAJOR}/bin
    NO_CMAKE_FIND_ROOT_PATH)
if(NOT ZVCORE_HOST_LRELEASE)
    message(FATAL_ERROR "ZVCore: a cross build runs the host's lrelease of Qt ${QT_VERSION_MAJOR}; "
        "none was found (set ZVCORE_HOST_LRELEASE).")
endif()
if(NOT TARGET ${ZVCORE_QT}::lrelease)
    add_executable(${ZVCORE_QT}::lrelease IMPORTED GLOBAL)
    set_target_properties(${ZVCORE_QT}::lrelease PROPERTIES IMPORTED_LOCATION "${ZVCORE_HOST_LRELEASE}")
endif()
message(STATUS "ZVCore: cross build; host tools from ${ZVCoreHostTools_DIR}, lrelease ${ZVCORE_HOST_LRELEASE}")
