# SPDX-License-Identifier: MIT
# Benches are targets bench_NAME that nothing else depends on; `./bench NAME` builds and runs one. Each accepts Google
# Benchmark's flags, whatever it is written in. Their folder is benches/, because ./bench is the command.

include_guard(GLOBAL)

option(ORVANEL_BENCH "Declare the benches (they need the packages of purpose 'bench')" OFF)
set(ORVANEL_BENCH_OUTPUT "${PROJECT_BINARY_DIR}/bench")

if(ORVANEL_BENCH AND WIN32)
    include(BenchmarkSource)
elseif(ORVANEL_BENCH)
    find_package(benchmark REQUIRED)
endif()

# orvanel_bench_without(NAME WHAT): says of a bench what it leaves out on this system, or, with the whole bench named, that
# it does not run there. ./bench prints it.
set_property(GLOBAL PROPERTY ORVANEL_BENCH_GAPS "")
function(orvanel_bench_without name what)
    set_property(GLOBAL APPEND_STRING PROPERTY ORVANEL_BENCH_GAPS "${name}: ${what}\n")
    get_property(gaps GLOBAL PROPERTY ORVANEL_BENCH_GAPS)
    file(WRITE "${ORVANEL_BENCH_OUTPUT}/left-out.txt" "${gaps}")
endfunction()

# orvanel_add_bench(NAME SOURCES file... LIBS target... [DEPENDS target...] [OWN_MAIN]): a Google Benchmark program.
function(orvanel_add_bench name)
    cmake_parse_arguments(BENCH "OWN_MAIN" "" "SOURCES;LIBS;DEPENDS" ${ARGN})
    if(NOT ORVANEL_BENCH)
        return()
    endif()
    add_executable(bench_${name} EXCLUDE_FROM_ALL ${BENCH_SOURCES})
    target_link_libraries(bench_${name} PRIVATE orvanel_options ${BENCH_LIBS} benchmark::benchmark)
    if(NOT BENCH_OWN_MAIN)
        target_link_libraries(bench_${name} PRIVATE benchmark::benchmark_main)
    endif()
    if(BENCH_DEPENDS)
        add_dependencies(bench_${name} ${BENCH_DEPENDS})
    endif()
    set_target_properties(bench_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${ORVANEL_BENCH_OUTPUT}")
endfunction()

# orvanel_add_python_bench(NAME FILE [DEPENDS target...]): a Python 2.7 program with the built modules on its path.
function(orvanel_add_python_bench name file)
    cmake_parse_arguments(BENCH "" "" "DEPENDS" ${ARGN})
    if(NOT ORVANEL_BENCH)
        return()
    endif()
    get_filename_component(file "${file}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    set(launcher "${ORVANEL_BENCH_OUTPUT}/bench_${name}")
    if(WIN32)
        # The runner rewrites PYTHONPATH. An interpreter has to be a process in which components can be created.
        set(path "${ORVANEL_PYTHON_OUTPUT}:${ORVANEL_BENCH_OUTPUT}:${PROJECT_SOURCE_DIR}/tests/windows/python")
        set(run "'${CMAKE_CROSSCOMPILING_EMULATOR}' '${ORVANEL_PYTHON27_WINDOWS_DIR}/python.exe' -B 'Z:${file}'")
    else()
        set(path "${ORVANEL_PYTHON_OUTPUT}:${ORVANEL_BENCH_OUTPUT}")
        set(run "'${PYTHON27_RUN}' -B '${file}'")
    endif()
    # CONTENT comes before FILE_PERMISSIONS: the other way round ends CMake 3.25 with a bad_alloc.
    file(GENERATE OUTPUT "${launcher}"
        CONTENT "#!/bin/sh\nexport PYTHONPATH='${path}'\nexec ${run} \"$@\"\n"
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    add_custom_target(bench_${name} DEPENDS ${BENCH_DEPENDS})
endfunction()
