# Picks the Qt major version the whole tree builds against, once, and finds it.
#
#   ZVCORE_QT_MAJOR   5 or 6; empty: Qt 6 when it is found (with every module the frame
#                     needs), else Qt 5.
#
# Afterwards QT_VERSION_MAJOR holds the major version (as Qt's own examples name it), so
# that every target links Qt${QT_VERSION_MAJOR}::Widgets and the like; the installed
# package records it as ZVCore_QT_MAJOR_VERSION.

set(ZVCORE_QT_MAJOR "" CACHE STRING "Qt major version to build against: 5 or 6 (empty: Qt 6 when found, else Qt 5)")
set_property(CACHE ZVCORE_QT_MAJOR PROPERTY STRINGS "" 5 6)

# The oldest minor release of each major version the frame supports.
set(ZVCORE_QT5_MIN_VERSION 5.15)
set(ZVCORE_QT6_MIN_VERSION 6.2)

set(zvcore_qt_modules Core Gui Widgets Xml)

if(ZVCORE_QT_MAJOR STREQUAL "")
    find_package(Qt6 ${ZVCORE_QT6_MIN_VERSION} QUIET COMPONENTS ${zvcore_qt_modules})
    if(Qt6_FOUND)
        set(QT_VERSION_MAJOR 6)
        set(zvcore_qt_reason "found first; -DZVCORE_QT_MAJOR=5 picks Qt 5")
    else()
        set(QT_VERSION_MAJOR 5)
        set(zvcore_qt_reason "no Qt 6 with Core, Gui, Widgets and Xml was found")
    endif()
elseif(ZVCORE_QT_MAJOR STREQUAL "5" OR ZVCORE_QT_MAJOR STREQUAL "6")
    set(QT_VERSION_MAJOR ${ZVCORE_QT_MAJOR})
    set(zvcore_qt_reason "ZVCORE_QT_MAJOR=${ZVCORE_QT_MAJOR}")
else()
    message(FATAL_ERROR "ZVCORE_QT_MAJOR is '${ZVCORE_QT_MAJOR}': it must be 5, 6 or empty.")
endif()

set(ZVCORE_QT Qt${QT_VERSION_MAJOR})
set(ZVCORE_QT_MIN_VERSION ${ZVCORE_QT${QT_VERSION_MAJOR}_MIN_VERSION})
find_package(${ZVCORE_QT} ${ZVCORE_QT_MIN_VERSION} REQUIRED COMPONENTS ${zvcore_qt_modules})
set(ZVCORE_QT_VERSION "${${ZVCORE_QT}Core_VERSION}")
message(STATUS "ZVCore: building against Qt ${ZVCORE_QT_VERSION} (${zvcore_qt_reason})")
