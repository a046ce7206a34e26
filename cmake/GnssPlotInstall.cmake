# SPDX-License-Identifier: MIT
include(CMakePackageConfigHelpers)

# Every installed name carries GNSSPLOT_NAME_SUFFIX (empty for Qt 5, -qt6
# for Qt 6), so both builds can share one prefix without a file in common:
#   lib/libgnssplot.so          lib/libgnssplot-qt6.so
#   include/gnssplot/           include/gnssplot-qt6/
#   lib/cmake/GnssPlot/         lib/cmake/GnssPlotQt6/
#   lib/pkgconfig/gnssplot.pc   lib/pkgconfig/gnssplot-qt6.pc
#   share/gnssplot/             share/gnssplot-qt6/
set(GNSSPLOT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/${GNSSPLOT_PACKAGE_NAME})

install(TARGETS gnssplot EXPORT GnssPlotTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${GNSSPLOT_PUBLIC_HEADERS}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${GNSSPLOT_OUTPUT_NAME})
install(EXPORT GnssPlotTargets
    NAMESPACE ${GNSSPLOT_PACKAGE_NAME}::
    FILE ${GNSSPLOT_PACKAGE_NAME}Targets.cmake
    DESTINATION ${GNSSPLOT_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/GnssPlotConfig.cmake.in
    ${PROJECT_BINARY_DIR}/${GNSSPLOT_PACKAGE_NAME}Config.cmake
    INSTALL_DESTINATION ${GNSSPLOT_CMAKE_DIR})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/${GNSSPLOT_PACKAGE_NAME}ConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/${GNSSPLOT_PACKAGE_NAME}Config.cmake
    ${PROJECT_BINARY_DIR}/${GNSSPLOT_PACKAGE_NAME}ConfigVersion.cmake
    DESTINATION ${GNSSPLOT_CMAKE_DIR})

# pkg-config file; its prefix is found relative to the file itself, so the
# installed tree can be moved.
file(RELATIVE_PATH GNSSPLOT_PC_TO_PREFIX
     /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/gnssplot.pc.in
               ${PROJECT_BINARY_DIR}/${GNSSPLOT_OUTPUT_NAME}.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${GNSSPLOT_OUTPUT_NAME}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
