# Run as a script: install BUILD_DIR into WORK_DIR/prefix, configure and build CONSUMER_SOURCE
# against it with find_package, build the same program a second time with nothing but the
# compiler and `pkg-config --cflags --libs panelkestrin`, then run both.
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "Failed (${rc}): ${ARGN}\n${out}\n${err}")
    endif()
endfunction()

run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
run(${CMAKE_COMMAND} -S "${CONSUMER_SOURCE}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_FLAGS=${CONSUMER_FLAGS}"
    "-DCMAKE_EXE_LINKER_FLAGS=${CONSUMER_FLAGS}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/consumer")

# The pkg-config build: the compiler and the flags the installed panelkestrin.pc gives, no CMake.
file(GLOB_RECURSE pc_file "${prefix}/*/panelkestrin.pc")
if(NOT pc_file)
    message(FATAL_ERROR "panelkestrin.pc was not installed under ${prefix}")
endif()
get_filename_component(pc_dir "${pc_file}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
execute_process(COMMAND pkg-config --cflags --libs panelkestrin
                RESULT_VARIABLE rc OUTPUT_VARIABLE pc_flags ERROR_VARIABLE pc_err
                OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "pkg-config cannot resolve panelkestrin: ${pc_err}")
endif()
separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
separate_arguments(extra_flags UNIX_COMMAND "${CONSUMER_FLAGS}")
run(${CXX} -std=c++17 -fPIC ${extra_flags} "${CONSUMER_SOURCE}/main.cpp"
    -o "${WORK_DIR}/consumer-pkgconfig" ${pc_flags})
get_filename_component(lib_dir "${pc_dir}" DIRECTORY)
set(ENV{LD_LIBRARY_PATH} "${lib_dir}")
run("${WORK_DIR}/consumer-pkgconfig")
message(STATUS "consumer built with find_package and with pkg-config, and ran against ${prefix}")
