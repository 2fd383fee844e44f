# Places the benchmarks' product files beside their programs. Run with cmake -P and:
#   SOURCE   bench/product
#   DEST     the programs' folder
#   ZVCRYPT  the zvcrypt program of the same build (enciphers the link files)
#   QM_DIR   the folder of the frame's ZVCore_<Name>.qm files
foreach(var SOURCE DEST ZVCRYPT QM_DIR)
    if(NOT DEFINED ${var} OR "${${var}}" STREQUAL "")
        message(FATAL_ERROR "placeproduct: ${var} is not set")
    endif()
endforeach()

file(MAKE_DIRECTORY "${DEST}/language/main" "${DEST}/language/qm/ZVCore" "${DEST}/skin/qss")
configure_file("${SOURCE}/productInfo.xml" "${DEST}/productInfo.xml" COPYONLY)
configure_file("${SOURCE}/language/main/localconfig.json" "${DEST}/language/main/localconfig.json" COPYONLY)
file(GLOB sheets "${SOURCE}/skin/qss/*.qss")
file(COPY ${sheets} DESTINATION "${DEST}/skin/qss")

# One 50-entry title menu, enciphered, as the link file of the three languages the
# language switch goes through.
execute_process(COMMAND "${ZVCRYPT}" encrypt-links "${SOURCE}/links/Bench_URL.plain.xml"
                OUTPUT_FILE "${DEST}/language/main/English_URL.xml.part"
                RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "placeproduct: zvcrypt failed: ${rc}")
endif()
foreach(language English German French)
    configure_file("${DEST}/language/main/English_URL.xml.part" "${DEST}/language/main/${language}_URL.xml" COPYONLY)
endforeach()
file(REMOVE "${DEST}/language/main/English_URL.xml.part")

# The frame's translations, and a host translation per language: the frame's catalogue
# stands in for it, so that the host's translator loads a file of a realistic size.
file(GLOB qms "${QM_DIR}/ZVCore_*.qm")
file(COPY ${qms} DESTINATION "${DEST}/language/qm/ZVCore")
foreach(qm IN LISTS qms)
    get_filename_component(name "${qm}" NAME)
    string(REGEX REPLACE "^ZVCore_" "" name "${name}")
    configure_file("${qm}" "${DEST}/language/qm/${name}" COPYONLY)
endforeach()

# No saved language: every run starts from the same choice.
file(REMOVE "${DEST}/language/language")
