# Script mode: install, build the host (MODE cmake or pkgconfig), run it.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "Command failed (${rc}): ${ARGN}")
    endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
set(host_flags "")
if(SANITIZE)
    set(host_flags "-fsanitize=address,undefined")
endif()

if(MODE STREQUAL "cmake")
    run(${CMAKE_COMMAND} -S ${HOST_SOURCE_DIR} -B ${WORK_DIR}/host -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
        -DCMAKE_PREFIX_PATH=${prefix}
        "-DCMAKE_CXX_FLAGS=${host_flags}"
        "-DCMAKE_EXE_LINKER_FLAGS=${host_flags}")
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/host)
    run(${WORK_DIR}/host/gnssplot-host)
else()
    find_program(PKG_CONFIG pkg-config REQUIRED)
    file(GLOB_RECURSE pc_file ${prefix}/gnssplot.pc)
    get_filename_component(pc_dir "${pc_file}" DIRECTORY)
    get_filename_component(lib_dir "${pc_dir}" DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} ${pc_dir})
    execute_process(COMMAND ${PKG_CONFIG} --cflags --libs gnssplot
                    OUTPUT_VARIABLE pc_flags OUTPUT_STRIP_TRAILING_WHITESPACE
                    RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "pkg-config does not find gnssplot in ${pc_dir}")
    endif()
    separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
    separate_arguments(host_flags UNIX_COMMAND "${host_flags}")
    run(${CXX_COMPILER} -std=c++17 ${host_flags} ${HOST_SOURCE_DIR}/main.cpp ${pc_flags}
        -Wl,-rpath,${lib_dir} -o ${WORK_DIR}/gnssplot-host)
    run(${WORK_DIR}/gnssplot-host)
endif()
