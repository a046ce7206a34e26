# Script mode: install, configure the host, build it, run it.
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
run(${CMAKE_COMMAND} -S ${HOST_SOURCE_DIR} -B ${WORK_DIR}/host -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_PREFIX_PATH=${prefix}
    "-DCMAKE_CXX_FLAGS=${host_flags}"
    "-DCMAKE_EXE_LINKER_FLAGS=${host_flags}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/host)
run(${WORK_DIR}/host/gnssplot-host)
