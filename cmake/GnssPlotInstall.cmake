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
