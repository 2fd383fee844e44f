# Installs ZVCore (MODE=install) or points at its build tree (MODE=buildtree), then
# configures, builds and runs the consumer project against it.
cmake_minimum_required(VERSION 3.18)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        string(REPLACE ";" " " line "${ARGN}")
        message(FATAL_ERROR "failed (${rc}): ${line}")
    endif()
endfunction()

if(MODE STREQUAL "othermajor")
    # A consumer of the other Qt major version is stopped at configure time, with a
    # message that names both versions.
    if(QT_MAJOR EQUAL 5)
        set(other 6)
    else()
        set(other 5)
    endif()
    # The other Qt's own packages may be missing; then only the variable is tried.
    foreach(way variable found later)
        set(build "${CONSUMER_BUILD}-${way}")
        file(REMOVE_RECURSE "${build}")
        execute_process(
            COMMAND "${CMAKE_COMMAND}" -S "${CONSUMER_SOURCE}" -B "${build}" -G "${GENERATOR}"
                "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_PREFIX_PATH=${STAGE}"
                "-DOTHER_QT=${other}" "-DWAY=${way}"
            RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
        if(rc EQUAL 0)
            message(FATAL_ERROR "a Qt ${other} consumer (${way}) configured against a Qt ${QT_MAJOR} install:\n${out}")
        endif()
        string(REGEX REPLACE "[ \n]+" " " text "${err}")
        if(NOT way STREQUAL "variable" AND text MATCHES "provided by \"Qt${other}\"")
            message(STATUS "package (othermajor, ${way}): Qt ${other} is not installed here")
            continue()
        endif()
        set(says "this project uses Qt ${other} (")
        if(way STREQUAL "later")
            set(says "this project also uses Qt ${other} (")
            # Qt 6 found after Qt 5 stops by itself: Qt 5 has defined the versionless
            # targets (Qt::Core) that Qt 6 would define.
            if(text MATCHES "targets in this export set were already defined")
                message(STATUS "package (othermajor, later): refused by Qt ${other} itself: ${text}")
                continue()
            endif()
        endif()
        foreach(expected "built with Qt ${QT_MAJOR}" "${says}")
            string(FIND "${text}" "${expected}" at)
            if(at EQUAL -1)
                message(FATAL_ERROR "the refusal (${way}) does not say \"${expected}\":\n${err}")
            endif()
        endforeach()
        message(STATUS "package (othermajor, ${way}): refused with: ${text}")
    endforeach()
    return()
endif()

if(MODE STREQUAL "demo" OR MODE STREQUAL "editor")
    # The staged install is made by package.install.
    if(NOT EXISTS "${STAGE}/lib/cmake/ZVCore/ZVCoreConfig.cmake" AND NOT EXISTS "${STAGE}/lib64/cmake/ZVCore/ZVCoreConfig.cmake")
        message(FATAL_ERROR "no staged install in ${STAGE}")
    endif()
    set(locate "-DCMAKE_PREFIX_PATH=${STAGE}")
elseif(MODE STREQUAL "install")
    file(REMOVE_RECURSE "${STAGE}")
    set(cfg)
    if(CONFIG)
        set(cfg --config "${CONFIG}")
    endif()
    run("${CMAKE_COMMAND}" --install "${ZVCORE_BUILD_DIR}" --prefix "${STAGE}" ${cfg})
    if(NOT EXISTS "${STAGE}/include/ZVCore/ZVCustomEventSendObj")
        message(FATAL_ERROR "the install tree lacks the forwarding header ZVCore/ZVCustomEventSendObj")
    endif()
    set(locate "-DCMAKE_PREFIX_PATH=${STAGE}")
else()
    set(locate "-DZVCore_DIR=${ZVCORE_BUILD_DIR}")
endif()

file(REMOVE_RECURSE "${CONSUMER_BUILD}")
set(extra)
if(LAUNCHER)
    list(APPEND extra "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}")
endif()
run("${CMAKE_COMMAND}" -S "${CONSUMER_SOURCE}" -B "${CONSUMER_BUILD}" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_BUILD_TYPE=Release" ${locate} ${extra})
run("${CMAKE_COMMAND}" --build "${CONSUMER_BUILD}")

if(MODE STREQUAL "editor")
    # The sample editor, built alone against the install, opening a file named relative
    # to the folder it is started in and drawing its window.
    file(WRITE "${CONSUMER_BUILD}/documents/notes.md" "# Notes\nA line.\n")
    file(REMOVE "${CONSUMER_BUILD}/documents/editor.png")
    execute_process(COMMAND "${CONSUMER_BUILD}/editor/zvcore-editor" --screenshot editor.png notes.md
        WORKING_DIRECTORY "${CONSUMER_BUILD}/documents" RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0 OR NOT EXISTS "${CONSUMER_BUILD}/documents/editor.png")
        message(FATAL_ERROR "the standalone editor did not draw its window (${rc})")
    endif()
    foreach(file productInfo.xml language/main/English_URL.xml language/qm/German.qm language/qm/Arabic.qm
                 language/qm/ZVCore/ZVCore_German.qm)
        if(NOT EXISTS "${CONSUMER_BUILD}/editor/${file}")
            message(FATAL_ERROR "the standalone editor's folder lacks ${file}")
        endif()
    endforeach()
    message(STATUS "package (editor): the editor built against the staged install and drew its window")
    return()
endif()

if(MODE STREQUAL "demo")
    set(shots "${CONSUMER_BUILD}/screenshots")
    file(REMOVE_RECURSE "${shots}")
    run("${CONSUMER_BUILD}/demo/zvcore-demo" --screenshots "${shots}")
    file(GLOB pictures "${shots}/*.png")
    list(LENGTH pictures count)
    if(NOT count EQUAL 16)
        message(FATAL_ERROR "the standalone demo drew ${count} pictures, not 16")
    endif()
    foreach(file Feedback appAutoUpdate productInfo.xml language/main/English_URL.xml
                 language/qm/German.qm language/qm/ZVCore/ZVCore_German.qm
                 skin/dark/Picture4K skin/light/PictureNormal)
        if(NOT EXISTS "${CONSUMER_BUILD}/demo/${file}")
            message(FATAL_ERROR "the standalone demo's folder lacks ${file}")
        endif()
    endforeach()
    message(STATUS "package (demo): the demo product built against the staged install and drew ${count} pictures")
    return()
endif()

foreach(program consumer_core consumer_control consumer_foundation)
    run("${CONSUMER_BUILD}/${program}")
endforeach()
message(STATUS "package (${MODE}): the consumer found, built and ran against ZVCore")
