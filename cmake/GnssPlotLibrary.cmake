# SPDX-License-Identifier: MIT
# The library is compiled once into an object library. The shared library
# exports only what carries GNSSPLOT_EXPORT; the static twin gives the unit
# tests access to the internal graphics items and labels as well.
set(GNSSPLOT_SUBSYSTEMS model scene graphics epoch sky)

# The one private header outside the subsystems: the calls that differ
# between Qt 5 and Qt 6.
set(GNSSPLOT_SOURCES ${PROJECT_SOURCE_DIR}/gnssplot_qtcompat_p.h)
set(GNSSPLOT_PUBLIC_HEADERS
    ${PROJECT_SOURCE_DIR}/gnssplot.h
    ${PROJECT_SOURCE_DIR}/gnssplot_global.h)
set(GNSSPLOT_INCLUDE_DIRS ${PROJECT_SOURCE_DIR})
foreach(dir IN LISTS GNSSPLOT_SUBSYSTEMS)
    file(GLOB dir_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.cpp)
    file(GLOB dir_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.h)
    list(APPEND GNSSPLOT_SOURCES ${dir_sources} ${dir_headers})
    # Headers ending in _p.h are internal and never installed.
    foreach(header IN LISTS dir_headers)
        if(NOT header MATCHES "_p\\.h$")
            list(APPEND GNSSPLOT_PUBLIC_HEADERS ${header})
        endif()
    endforeach()
    list(APPEND GNSSPLOT_INCLUDE_DIRS ${PROJECT_SOURCE_DIR}/${dir})
endforeach()

add_library(gnssplot_objects OBJECT ${GNSSPLOT_SOURCES} ${GNSSPLOT_PUBLIC_HEADERS})
set_target_properties(gnssplot_objects PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
target_compile_definitions(gnssplot_objects PRIVATE GNSSPLOT_BUILD_LIBRARY
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
target_include_directories(gnssplot_objects PUBLIC ${GNSSPLOT_INCLUDE_DIRS})
# Pixels are worked out by several paths (scalar, SSE2, AVX2) that must agree
# to the bit: no multiply and add may be fused into one rounding on one path
# only.
target_compile_options(gnssplot_objects PRIVATE
    $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-ffp-contract=off>)
target_link_libraries(gnssplot_objects PUBLIC ${GNSSPLOT_QT_LIBRARIES})

add_library(gnssplot SHARED $<TARGET_OBJECTS:gnssplot_objects>)
add_library(GnssPlot::gnssplot ALIAS gnssplot)
set_target_properties(gnssplot PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    OUTPUT_NAME ${GNSSPLOT_OUTPUT_NAME}
    EXPORT_NAME gnssplot)
target_link_libraries(gnssplot PUBLIC ${GNSSPLOT_QT_LIBRARIES})
target_include_directories(gnssplot PUBLIC
    "$<BUILD_INTERFACE:${GNSSPLOT_INCLUDE_DIRS}>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/${GNSSPLOT_OUTPUT_NAME}>")

add_library(gnssplot_internal STATIC $<TARGET_OBJECTS:gnssplot_objects>)
target_compile_definitions(gnssplot_internal INTERFACE GNSSPLOT_STATIC)
target_include_directories(gnssplot_internal PUBLIC ${GNSSPLOT_INCLUDE_DIRS})
target_link_libraries(gnssplot_internal PUBLIC ${GNSSPLOT_QT_LIBRARIES})
