# Places the sample product beside the demo's executable. Run with cmake -P and:
#   SOURCE       examples/host/product
#   DEST         the executable's folder
#   ZVCRYPT      the zvcrypt program of the same build (enciphers the link files)
#   MAKEPICTURES the picture generator
#   QM_DIR       the folder of the frame's ZVCore_<Name>.qm files (may be empty)
foreach(var SOURCE DEST ZVCRYPT MAKEPICTURES)
    if(NOT DEFINED ${var} OR "${${var}}" STREQUAL "")
        message(FATAL_ERROR "installproduct: ${var} is not set")
    endif()
endforeach()

file(MAKE_DIRECTORY "${DEST}/language/main" "${DEST}/language/qm/ZVCore")
configure_file("${SOURCE}/productInfo.xml" "${DEST}/productInfo.xml" COPYONLY)
configure_file("${SOURCE}/language/main/localconfig.json" "${DEST}/language/main/localconfig.json" COPYONLY)

# Link files: plain addresses in the sources, enciphered beside the executable.
file(GLOB plains "${SOURCE}/links/*_URL.plain.xml")
foreach(plain IN LISTS plains)
    get_filename_component(name "${plain}" NAME)
    string(REPLACE ".plain.xml" ".xml" name "${name}")
    execute_process(COMMAND "${ZVCRYPT}" encrypt-links "${plain}"
                    OUTPUT_FILE "${DEST}/language/main/${name}.part"
                    RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "installproduct: zvcrypt failed on ${plain}: ${rc}")
    endif()
    file(RENAME "${DEST}/language/main/${name}.part" "${DEST}/language/main/${name}")
endforeach()

# The frame's translations, unless they are built straight into this folder already.
if(QM_DIR AND EXISTS "${QM_DIR}")
    get_filename_component(from "${QM_DIR}" REALPATH)
    get_filename_component(to "${DEST}/language/qm/ZVCore" REALPATH)
    if(NOT from STREQUAL to)
        file(GLOB qms "${QM_DIR}/ZVCore_*.qm")
        file(COPY ${qms} DESTINATION "${DEST}/language/qm/ZVCore")
    endif()
endif()

# Skins: style sheets copied, pictures drawn at 1x and 2x.
foreach(skin light dark)
    file(MAKE_DIRECTORY "${DEST}/skin/${skin}/qss")
    file(GLOB sheets "${SOURCE}/skin/${skin}/qss/*.qss")
    file(COPY ${sheets} DESTINATION "${DEST}/skin/${skin}/qss")
    foreach(pair "PictureNormal;1" "Picture4K;2")
        list(GET pair 0 folder)
        list(GET pair 1 scale)
        execute_process(COMMAND "${MAKEPICTURES}" "${DEST}/skin/${skin}/${folder}" "${skin}" "${scale}"
                        RESULT_VARIABLE rc)
        if(NOT rc EQUAL 0)
            message(FATAL_ERROR "installproduct: makepictures failed for ${skin}/${folder}: ${rc}")
        endif()
    endforeach()
endforeach()
