# SPDX-License-Identifier: MIT
# Google Benchmark for the cross build, which has no library of it, from the source that scripts/setup/benchmark-windows.sh
# lays down.

set(ORVANEL_BENCHMARK_DIR "${PROJECT_SOURCE_DIR}/build/benchmark-source" CACHE PATH "Source folder of Google Benchmark")
if(NOT EXISTS "${ORVANEL_BENCHMARK_DIR}/CMakeLists.txt")
    message(FATAL_ERROR "Google Benchmark's source is missing: run scripts/setup/benchmark-windows.sh")
endif()
set(BENCHMARK_ENABLE_TESTING OFF CACHE BOOL "" FORCE)
set(BENCHMARK_ENABLE_INSTALL OFF CACHE BOOL "" FORCE)
set(BENCHMARK_ENABLE_GTEST_TESTS OFF CACHE BOOL "" FORCE)
set(BENCHMARK_ENABLE_WERROR OFF CACHE BOOL "" FORCE)
# It would run a program to find this out.
set(HAVE_STD_REGEX ON CACHE BOOL "" FORCE)
set(HAVE_STEADY_CLOCK ON CACHE BOOL "" FORCE)
add_subdirectory("${ORVANEL_BENCHMARK_DIR}" "${PROJECT_BINARY_DIR}/benchmark" EXCLUDE_FROM_ALL SYSTEM)
foreach(library benchmark benchmark_main)
    # It calls the system's functions by their narrow names.
    target_compile_options(${library} PRIVATE ${ORVANEL_FOREIGN_OPTIONS} -UUNICODE -U_UNICODE)
    if(NOT TARGET benchmark::${library})
        add_library(benchmark::${library} ALIAS ${library})
    endif()
endforeach()
