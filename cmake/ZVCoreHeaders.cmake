# CamelCase forwarding headers over lower-case files, as Qt and KDE ship them.
#
#   zv_headers(<prefix> [PRIVATE] HEADERS <ClassName> <file.h> [<ClassName> <file.h> ...])
#
# For each pair the build tree gets ${ZVCORE_INCLUDE_DIR}/<prefix>[/private]/<ClassName>,
# which includes the source file by its absolute path, and the install tree gets the
# lower-case file and a forwarding header beside it. Headers include one another only
# through <Prefix/ClassName>, so both trees resolve the same way.
function(zv_headers prefix)
    cmake_parse_arguments(ARG "PRIVATE" "" "HEADERS" ${ARGN})
    list(LENGTH ARG_HEADERS count)
    math(EXPR odd "${count} % 2")
    if(count EQUAL 0 OR odd)
        message(FATAL_ERROR "zv_headers(${prefix}): HEADERS takes <ClassName> <file> pairs")
    endif()

    set(subdir "${prefix}")
    if(ARG_PRIVATE)
        set(subdir "${prefix}/private")
    endif()

    math(EXPR last "${count} - 1")
    foreach(i RANGE 0 ${last} 2)
        math(EXPR j "${i} + 1")
        list(GET ARG_HEADERS ${i} class)
        list(GET ARG_HEADERS ${j} file)
        get_filename_component(abs "${file}" ABSOLUTE)
        if(NOT EXISTS "${abs}")
            message(FATAL_ERROR "zv_headers(${prefix}): ${abs} does not exist")
        endif()
        get_filename_component(name "${abs}" NAME)

        # file(CONFIGURE) rewrites only on change, so a reconfigure rebuilds nothing.
        file(CONFIGURE OUTPUT "${ZVCORE_INCLUDE_DIR}/${subdir}/${class}"
            CONTENT "#include \"${abs}\"\n" @ONLY)

        set(installed "${CMAKE_CURRENT_BINARY_DIR}/forwarding/${subdir}/${class}")
        file(CONFIGURE OUTPUT "${installed}" CONTENT "#include \"${name}\"\n" @ONLY)
        install(FILES "${abs}" "${installed}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${subdir}")
    endforeach()
endfunction()

# Shared library with the project's export header at <prefix>/<lower>_export.h.
#   zv_add_library(<target> <prefix> SOURCES ...)
function(zv_add_library target prefix)
    cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
    add_library(${target} SHARED ${ARG_SOURCES})
    add_library(ZVCore::${target} ALIAS ${target})
    string(TOUPPER "${target}" upper)
    string(TOLOWER "${target}" lower)

    # Internal classes are exported only for the autotests of a developer build.
    if(ZVCORE_DEVELOPER_BUILD)
        set(autotest "#define ${upper}_AUTOTEST_EXPORT ${upper}_EXPORT\n")
    else()
        set(autotest "#define ${upper}_AUTOTEST_EXPORT\n")
    endif()
    generate_export_header(${target}
        BASE_NAME ${upper}
        EXPORT_FILE_NAME "${ZVCORE_INCLUDE_DIR}/${prefix}/${lower}_export.h"
        CUSTOM_CONTENT_FROM_VARIABLE autotest)
    install(FILES "${ZVCORE_INCLUDE_DIR}/${prefix}/${lower}_export.h"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${prefix}")

    target_include_directories(${target} PUBLIC
        "$<BUILD_INTERFACE:${ZVCORE_INCLUDE_DIR}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        EXPORT_NAME ${target})
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        target_compile_options(${target} PRIVATE -Wall -Wextra)
    endif()
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_USE_QSTRINGBUILDER)
    install(TARGETS ${target} EXPORT ZVCoreTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endfunction()
