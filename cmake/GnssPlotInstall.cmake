include(CMakePackageConfigHelpers)

set(GNSSPLOT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/GnssPlot)

install(TARGETS gnssplot EXPORT GnssPlotTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${GNSSPLOT_PUBLIC_HEADERS}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/gnssplot)
install(EXPORT GnssPlotTargets
    NAMESPACE GnssPlot::
    DESTINATION ${GNSSPLOT_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/GnssPlotConfig.cmake.in
    ${PROJECT_BINARY_DIR}/GnssPlotConfig.cmake
    INSTALL_DESTINATION ${GNSSPLOT_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/GnssPlotConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/GnssPlotConfig.cmake
    ${PROJECT_BINARY_DIR}/GnssPlotConfigVersion.cmake
    DESTINATION ${GNSSPLOT_CMAKE_DIR})

# pkg-config file; its prefix is found relative to the file itself, so the
# installed tree can be moved.
file(RELATIVE_PATH GNSSPLOT_PC_TO_PREFIX
     /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/gnssplot.pc.in ${PROJECT_BINARY_DIR}/gnssplot.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/gnssplot.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
