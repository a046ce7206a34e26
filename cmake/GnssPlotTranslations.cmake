# SPDX-License-Identifier: MIT
# Compiles the translations with lrelease. The .qm files are embedded in the
# library under :/gnssplot/translations and installed beside it, so a host
# loads them with one QTranslator from either place.
find_package(${GNSSPLOT_QT}LinguistTools ${GNSSPLOT_QT_MIN_VERSION} QUIET)
if(NOT ${GNSSPLOT_QT}LinguistTools_FOUND)
    message(STATUS "${GNSSPLOT_QT}LinguistTools not found: translations are not built")
    return()
endif()

file(GLOB GNSSPLOT_TS_FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/translations/gnssplot_*.ts)
set_source_files_properties(${GNSSPLOT_TS_FILES} PROPERTIES
    OUTPUT_LOCATION ${PROJECT_BINARY_DIR}/translations)
cmake_language(CALL qt${GNSSPLOT_QT_MAJOR}_add_translation GNSSPLOT_QM_FILES ${GNSSPLOT_TS_FILES})

set(qrc ${PROJECT_BINARY_DIR}/translations/gnssplot_translations.qrc)
set(qrc_body "<RCC><qresource prefix=\"/gnssplot/translations\">\n")
foreach(qm IN LISTS GNSSPLOT_QM_FILES)
    get_filename_component(qm_name ${qm} NAME)
    string(APPEND qrc_body "  <file alias=\"${qm_name}\">${qm}</file>\n")
endforeach()
string(APPEND qrc_body "</qresource></RCC>\n")
file(CONFIGURE OUTPUT ${qrc} CONTENT "${qrc_body}")
cmake_language(CALL qt${GNSSPLOT_QT_MAJOR}_add_resources GNSSPLOT_QM_RESOURCES ${qrc})
set_source_files_properties(${GNSSPLOT_QM_RESOURCES} PROPERTIES SKIP_AUTOMOC ON)
target_sources(gnssplot_objects PRIVATE ${GNSSPLOT_QM_RESOURCES})

install(FILES ${GNSSPLOT_QM_FILES}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/${GNSSPLOT_OUTPUT_NAME}/translations)
