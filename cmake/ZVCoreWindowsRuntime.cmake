# A MinGW build for Windows: the folders programs start from (the build tree's bin/, the
# demo's and the editor's product folders) get what a program needs beside itself to run
# without PATH or QT_PLUGIN_PATH: the frame's DLLs, Qt's DLLs, the "windows" and
# "offscreen" platform plugins, the "windowsvista" style and the compiler's runtime DLLs.
#
#   zv_windows_runtime(<name> <folder> [TEST])
#
# adds the target zvcore-runtime-<name>, part of "all", that copies them into <folder>
# once the frame's libraries are built; TEST adds Qt's test library.

set(zv_runtime_dlls)
foreach(dll libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${dll}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(IS_ABSOLUTE "${path}" AND EXISTS "${path}")
        list(APPEND zv_runtime_dlls "${path}")
    else()
        message(WARNING "ZVCore: ${CMAKE_CXX_COMPILER} does not know where ${dll} is; "
            "programs of this build may not start outside it")
    endif()
endforeach()
set(ZVCORE_WINDOWS_RUNTIME_DLLS "${zv_runtime_dlls}" CACHE INTERNAL "")

function(zv_windows_runtime name folder)
    cmake_parse_arguments(ARG "TEST" "" "" ${ARGN})
    set(modules Core Gui Widgets Xml)
    if(ARG_TEST)
        find_package(${ZVCORE_QT} ${ZVCORE_QT_MIN_VERSION} REQUIRED COMPONENTS Test)
        list(APPEND modules Test)
    endif()
    set(files)
    foreach(module IN LISTS modules)
        list(APPEND files "$<TARGET_FILE:${ZVCORE_QT}::${module}>")
    endforeach()
    foreach(library ZVFoundation ZVControl ZVCore)
        list(APPEND files "$<TARGET_FILE:${library}>")
    endforeach()
    add_custom_target(zvcore-runtime-${name} ALL
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}/platforms" "${folder}/styles"
        COMMAND "${CMAKE_COMMAND}" -E copy_if_different ${files} ${ZVCORE_WINDOWS_RUNTIME_DLLS} "${folder}"
        COMMAND "${CMAKE_COMMAND}" -E copy_if_different
                "$<TARGET_FILE:${ZVCORE_QT}::QWindowsIntegrationPlugin>"
                "$<TARGET_FILE:${ZVCORE_QT}::QOffscreenIntegrationPlugin>"
                "${folder}/platforms"
        COMMAND "${CMAKE_COMMAND}" -E copy_if_different
                "$<TARGET_FILE:${ZVCORE_QT}::QWindowsVistaStylePlugin>" "${folder}/styles"
        COMMENT "Placing the runtime DLLs and Qt's plugins in ${folder}"
        VERBATIM)
    add_dependencies(zvcore-runtime-${name} ZVFoundation ZVControl ZVCore)
endfunction()
