# SPDX-License-Identifier: MIT
# Qt Designer plugin offering the curve view, the epoch table and the sky
# plot. Built when
# Qt's designer development files are present (Debian's qttools5-dev for
# Qt 5, qt6-tools-dev for Qt 6).
find_package(${GNSSPLOT_QT} ${GNSSPLOT_QT_MIN_VERSION} QUIET COMPONENTS UiPlugin)
if(NOT ${GNSSPLOT_QT}UiPlugin_FOUND)
    message(STATUS "${GNSSPLOT_QT}UiPlugin not found: the Designer plugin is not built")
    return()
endif()

add_library(gnssplot_designer MODULE
    ${PROJECT_SOURCE_DIR}/designer/GnssPlotDesignerPlugin.cpp
    ${PROJECT_SOURCE_DIR}/designer/GnssPlotDesignerPlugin.h)
target_link_libraries(gnssplot_designer PRIVATE gnssplot ${GNSSPLOT_QT}::UiPlugin)
set_target_properties(gnssplot_designer PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/designer)

# Designer scans <Qt plugins>/designer, a folder of its own per Qt major, so
# the plugin keeps one name for both. The path is taken relative to Qt's own
# prefix, so an install with CMAKE_INSTALL_PREFIX=/usr lands exactly there
# and any other prefix keeps the same layout below itself.
get_target_property(qt_qmake ${GNSSPLOT_QT}::qmake IMPORTED_LOCATION)
execute_process(COMMAND ${qt_qmake} -query QT_INSTALL_PLUGINS
                OUTPUT_VARIABLE qt_plugins OUTPUT_STRIP_TRAILING_WHITESPACE
                RESULT_VARIABLE qmake_rc ERROR_QUIET)
if(NOT qmake_rc EQUAL 0 OR NOT qt_plugins)
    set(qt_plugins "/usr/${CMAKE_INSTALL_LIBDIR}/qt${GNSSPLOT_QT_MAJOR}/plugins")
endif()
file(RELATIVE_PATH qt_plugins_rel /usr ${qt_plugins})
set(GNSSPLOT_DESIGNER_PLUGIN_DIR ${qt_plugins_rel}/designer CACHE STRING
    "Where the Designer plugin is installed, relative to the install prefix")
install(TARGETS gnssplot_designer LIBRARY DESTINATION ${GNSSPLOT_DESIGNER_PLUGIN_DIR})
