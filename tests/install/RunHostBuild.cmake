# SPDX-License-Identifier: MIT
# Script mode. MODE cmake or pkgconfig: install this build, then build and
# run the package check (host/) and build examples/first-host through that
# route. MODE side_by_side: install this build and PEER_BUILD_DIR (the other
# Qt major) into one prefix, check that they share no file, and build
# first-host against each package.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)
set(first_host ${SOURCE_DIR}/examples/first-host)
set(check_host ${SOURCE_DIR}/tests/install/host)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "Command failed (${rc}): ${ARGN}")
    endif()
endfunction()

set(host_flags "")
if(SANITIZE)
    set(host_flags "-fsanitize=address,undefined")
endif()

# Configures and builds a CMake host against the prefix; GNSSPLOT_QT_MAJOR
# picks the package where both are installed.
function(build_cmake_host source build qt_major)
    run(${CMAKE_COMMAND} -S ${source} -B ${build} -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
        -DCMAKE_PREFIX_PATH=${prefix}
        -DGNSSPLOT_QT_MAJOR=${qt_major}
        "-DCMAKE_CXX_FLAGS=${host_flags}"
        "-DCMAKE_EXE_LINKER_FLAGS=${host_flags}")
    run(${CMAKE_COMMAND} --build ${build})
endfunction()

# Compiles one source file with the flags pkg-config gives for module.
function(build_pkgconfig_host source output module)
    find_program(PKG_CONFIG pkg-config REQUIRED)
    file(GLOB_RECURSE pc_file ${prefix}/${module}.pc)
    if(NOT pc_file)
        message(FATAL_ERROR "${module}.pc is not installed under ${prefix}")
    endif()
    get_filename_component(pc_dir "${pc_file}" DIRECTORY)
    get_filename_component(lib_dir "${pc_dir}" DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} ${pc_dir})
    execute_process(COMMAND ${PKG_CONFIG} --cflags --libs ${module}
                    OUTPUT_VARIABLE pc_flags OUTPUT_STRIP_TRAILING_WHITESPACE
                    RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "pkg-config does not find ${module} in ${pc_dir}")
    endif()
    separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
    separate_arguments(flags UNIX_COMMAND "${host_flags}")
    run(${CXX_COMPILER} -std=c++17 ${flags} ${source} ${pc_flags}
        -Wl,-rpath,${lib_dir} -o ${output})
endfunction()

# The files an install of build_dir puts below a fresh prefix, relative.
function(installed_files build_dir out)
    set(scratch ${WORK_DIR}/files-of-${out})
    run(${CMAKE_COMMAND} --install ${build_dir} --prefix ${scratch})
    file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE ${scratch} ${scratch}/*)
    set(${out} ${files} PARENT_SCOPE)
endfunction()

if(MODE STREQUAL "cmake")
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
    build_cmake_host(${check_host} ${WORK_DIR}/check ${QT_MAJOR})
    run(${WORK_DIR}/check/gnssplot-host)
    build_cmake_host(${first_host} ${WORK_DIR}/first-host ${QT_MAJOR})
elseif(MODE STREQUAL "pkgconfig")
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
    build_pkgconfig_host(${check_host}/main.cpp ${WORK_DIR}/gnssplot-host ${PC_MODULE})
    run(${WORK_DIR}/gnssplot-host)
    build_pkgconfig_host(${first_host}/main.cpp ${WORK_DIR}/first-host ${PC_MODULE})
elseif(MODE STREQUAL "side_by_side")
    installed_files(${BUILD_DIR} own)
    installed_files(${PEER_BUILD_DIR} peer)
    set(shared "")
    foreach(file IN LISTS own)
        if(file IN_LIST peer)
            list(APPEND shared ${file})
        endif()
    endforeach()
    if(shared)
        message(FATAL_ERROR "Both Qt builds install: ${shared}")
    endif()
    run(${CMAKE_COMMAND} --install ${PEER_BUILD_DIR} --prefix ${prefix})
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
    foreach(major 5 6)
        build_cmake_host(${first_host} ${WORK_DIR}/first-host-qt${major} ${major})
    endforeach()
    build_pkgconfig_host(${first_host}/main.cpp ${WORK_DIR}/first-host-gnssplot gnssplot)
    build_pkgconfig_host(${first_host}/main.cpp ${WORK_DIR}/first-host-gnssplot-qt6
                         gnssplot-qt6)
else()
    message(FATAL_ERROR "Unknown MODE '${MODE}'")
endif()
