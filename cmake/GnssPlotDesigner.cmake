# Qt Designer plugin offering the curve view and the epoch table. Built when
# Qt's designer development files (Debian's qttools5-dev) are present.
find_package(Qt5 5.15 QUIET COMPONENTS UiPlugin)
if(NOT Qt5UiPlugin_FOUND)
    message(STATUS "Qt5UiPlugin not found: the Designer plugin is not built")
    return()
endif()

add_library(gnssplot_designer MODULE
    ${PROJECT_SOURCE_DIR}/designer/GnssPlotDesignerPlugin.cpp
    ${PROJECT_SOURCE_DIR}/designer/GnssPlotDesignerPlugin.h)
target_link_libraries(gnssplot_designer PRIVATE gnssplot Qt5::UiPlugin)
set_target_properties(gnssplot_designer PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/designer)

# Designer scans <Qt plugins>/designer. The path is taken relative to Qt's
# own prefix, so an install with CMAKE_INSTALL_PREFIX=/usr lands exactly
# there and any other prefix keeps the same layout below itself.
get_target_property(qt_qmake Qt5::qmake IMPORTED_LOCATION)
execute_process(COMMAND ${qt_qmake} -query QT_INSTALL_PLUGINS
                OUTPUT_VARIABLE qt_plugins OUTPUT_STRIP_TRAILING_WHITESPACE
                RESULT_VARIABLE qmake_rc ERROR_QUIET)
if(NOT qmake_rc EQUAL 0 OR NOT qt_plugins)
    set(qt_plugins "/usr/${CMAKE_INSTALL_LIBDIR}/qt5/plugins")
endif()
file(RELATIVE_PATH qt_plugins_rel /usr ${qt_plugins})
set(GNSSPLOT_DESIGNER_PLUGIN_DIR ${qt_plugins_rel}/designer CACHE STRING
    "Where the Designer plugin is installed, relative to the install prefix")
install(TARGETS gnssplot_designer LIBRARY DESTINATION ${GNSSPLOT_DESIGNER_PLUGIN_DIR})
