# SPDX-License-Identifier: MIT
# API documentation: `cmake --build build --target docs` writes HTML to
# build/docs/html. Doxygen fails on any warning, so an undocumented public
# method breaks the docs build.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
    return()
endif()
set(GNSSPLOT_DOCS_OUTPUT ${PROJECT_BINARY_DIR}/docs)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(docs
    COMMAND ${DOXYGEN_EXECUTABLE} ${PROJECT_BINARY_DIR}/Doxyfile
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    COMMENT "Building the API documentation"
    VERBATIM)

if(GNSSPLOT_BUILD_TESTS)
    add_test(NAME docs/doxygen
             COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target docs)
    set_tests_properties(docs/doxygen PROPERTIES LABELS docs TIMEOUT 300)
endif()
