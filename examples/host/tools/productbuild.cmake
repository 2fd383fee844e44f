# Build steps the sample products share (the demo here, and the editor, which includes
# this file from its own folder).

# zv_product_translations(<program> <folder> <Name>...)
# Compiles translations/<Name>.ts of the calling folder into <folder>/language/qm/<Name>.qm,
# where the host's translator looks, before <program> is built.
function(zv_product_translations program folder)
    set(qm_files)
    foreach(name IN LISTS ARGN)
        set(ts "${CMAKE_CURRENT_SOURCE_DIR}/translations/${name}.ts")
        set(qm "${folder}/language/qm/${name}.qm")
        add_custom_command(
            OUTPUT "${qm}"
            COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}/language/qm"
            COMMAND ${ZVCORE_QT}::lrelease -silent "${ts}" -qm "${qm}"
            DEPENDS "${ts}"
            COMMENT "Compiling ${program}'s ${name}.ts"
            VERBATIM)
        list(APPEND qm_files "${qm}")
    endforeach()
    add_custom_target(${program}-translations DEPENDS ${qm_files})
    add_dependencies(${program} ${program}-translations)
endfunction()

# zv_product_tools(<program> <zvcrypt variable> <qm folder variable>)
# The enciphering tool and the folder of the frame's ZVCore_<Name>.qm files that placing
# <program>'s product needs: from the ZVCore tree when there is one (the host's zvcrypt in
# a cross build), else from the installed package. The folder is a cache variable of the
# name given, so that it can be set by hand.
function(zv_product_tools program zvcrypt_variable qm_variable)
    if(ZVCORE_HOST_ZVCRYPT)
        set(zvcrypt "${ZVCORE_HOST_ZVCRYPT}")
    elseif(TARGET zvcrypt)
        set(zvcrypt "$<TARGET_FILE:zvcrypt>")
        add_dependencies(${program} zvcrypt)
    else()
        find_program(${zvcrypt_variable}_PROGRAM zvcrypt REQUIRED
                     HINTS "${ZVCore_DIR}/../../../bin" "${ZVCore_DIR}/bin")
        set(zvcrypt "${${zvcrypt_variable}_PROGRAM}")
    endif()
    set(${zvcrypt_variable} "${zvcrypt}" PARENT_SCOPE)

    if(TARGET zvcore_translations)
        add_dependencies(${program} zvcore_translations)
        set(qm_dir "${CMAKE_BINARY_DIR}/bin/language/qm/ZVCore")
    else()
        # An installed package keeps them in <prefix>/share/ZVCore/translations.
        get_filename_component(prefix "${ZVCore_DIR}/../../.." ABSOLUTE)
        set(qm_dir "${prefix}/share/ZVCore/translations")
    endif()
    set(${qm_variable} "${qm_dir}" CACHE PATH "Folder of the frame's ZVCore_<Name>.qm files for ${program}")
endfunction()
