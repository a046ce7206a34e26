# SPDX-License-Identifier: MIT
# Chooses the Qt major version and derives every name that depends on it.
#
#   -DGNSSPLOT_QT_MAJOR=6   build against Qt 6 (6.4 or later)
#   -DGNSSPLOT_QT_MAJOR=5   build against Qt 5 (5.15)
#
# Left empty, Qt 6 is taken when it is installed, else Qt 5; the choice is
# then kept in the cache, so a build folder stays with one Qt.
set(GNSSPLOT_QT_MAJOR "" CACHE STRING
    "Qt major version to build against (5 or 6; empty: 6 when installed, else 5)")
set_property(CACHE GNSSPLOT_QT_MAJOR PROPERTY STRINGS "" 5 6)
if(GNSSPLOT_QT_MAJOR STREQUAL "")
    find_package(Qt6 6.4 QUIET COMPONENTS Core)
    if(Qt6_FOUND)
        set(GNSSPLOT_QT_MAJOR 6 CACHE STRING "Qt major version to build against" FORCE)
    else()
        set(GNSSPLOT_QT_MAJOR 5 CACHE STRING "Qt major version to build against" FORCE)
    endif()
endif()
if(NOT GNSSPLOT_QT_MAJOR MATCHES "^[56]$")
    message(FATAL_ERROR "GNSSPLOT_QT_MAJOR must be 5 or 6, not '${GNSSPLOT_QT_MAJOR}'")
endif()

set(GNSSPLOT_QT Qt${GNSSPLOT_QT_MAJOR})
if(GNSSPLOT_QT_MAJOR EQUAL 6)
    set(GNSSPLOT_QT_MIN_VERSION 6.4)
    # Installed beside the Qt 5 build: every file name that a host or a
    # package manager sees carries the suffix, the Qt 5 names stay as they
    # were released.
    set(GNSSPLOT_NAME_SUFFIX -qt6)
    set(GNSSPLOT_PACKAGE_NAME GnssPlotQt6)
else()
    set(GNSSPLOT_QT_MIN_VERSION 5.15)
    set(GNSSPLOT_NAME_SUFFIX "")
    set(GNSSPLOT_PACKAGE_NAME GnssPlot)
endif()
# Library, pkg-config module, include folder and data folder name.
set(GNSSPLOT_OUTPUT_NAME gnssplot${GNSSPLOT_NAME_SUFFIX})

# The Qt modules the library links; a module added here reaches the build,
# the CMake package and the pkg-config file alike.
set(GNSSPLOT_QT_COMPONENTS Core Gui Widgets Concurrent)
find_package(${GNSSPLOT_QT} ${GNSSPLOT_QT_MIN_VERSION} REQUIRED
             COMPONENTS ${GNSSPLOT_QT_COMPONENTS})
set(GNSSPLOT_QT_LIBRARIES "")
set(GNSSPLOT_PC_REQUIRES "")
foreach(component IN LISTS GNSSPLOT_QT_COMPONENTS)
    list(APPEND GNSSPLOT_QT_LIBRARIES ${GNSSPLOT_QT}::${component})
    string(APPEND GNSSPLOT_PC_REQUIRES
           " ${GNSSPLOT_QT}${component} >= ${GNSSPLOT_QT_MIN_VERSION}")
endforeach()
string(STRIP "${GNSSPLOT_PC_REQUIRES}" GNSSPLOT_PC_REQUIRES)
message(STATUS "gnssplot: building against Qt ${${GNSSPLOT_QT}_VERSION}")
