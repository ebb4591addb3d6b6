# SPDX-License-Identifier: MIT
# Everything that decides how a source of ours is compiled: warnings, floating point, sanitizers, coverage, compiler cache.
# Sources of others (GoogleTest, generated ones) get the sanitizers of memory and threads too, but not what is theirs to mend.

include_guard(GLOBAL)

set(ORVANEL_SANITIZER "" CACHE STRING "Empty, thread, address, undefined or the list of the last two")
option(ORVANEL_COVERAGE "Count executed lines (gcov)" OFF)
option(ORVANEL_FUZZ "Build the fuzzers (clang's libFuzzer with the address sanitizer)" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# The cache is shared between work trees: paths below the source tree count as relative, the build folder's name not at all.
find_program(ORVANEL_CCACHE ccache)
if(ORVANEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # The sloppiness is what a precompiled header needs: its compiler cannot say which macros and times it read.
    set(launcher env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros "${ORVANEL_CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

if(WIN32)
    # Windows 7 is the oldest system that the interfaces in use need.
    add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601 UNICODE _UNICODE)
endif()
if(MSVC)
    # Standard conformance, UTF-8 sources, and the run time inside the module, as the other build has it.
    add_compile_options(/permissive- /utf-8 /Zc:__cplusplus /Zc:preprocessor /EHsc /bigobj)
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
else()
    # Debug information and __FILE__ name sources relative to the repository, so equal sources make equal objects.
    add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")
endif()

set(ORVANEL_SANITIZER_LIBRARIES)
set(ORVANEL_FOREIGN_OPTIONS -w)
foreach(sanitizer IN LISTS ORVANEL_SANITIZER)
    if(sanitizer STREQUAL "address")
        list(APPEND sanitize -fsanitize=address -fsanitize-address-use-after-scope)
        list(APPEND ORVANEL_SANITIZER_LIBRARIES libasan.so)
    elseif(sanitizer STREQUAL "thread")
        list(APPEND sanitize -fsanitize=thread)
        list(APPEND ORVANEL_SANITIZER_LIBRARIES libtsan.so)
    elseif(sanitizer STREQUAL "undefined")
        # A report ends the program: a test that prints one and passes would be no test.
        # Division of a float by zero is left out: IEEE 754 defines it, and a placement without size needs its result.
        list(APPEND sanitize -fsanitize=undefined -fsanitize=float-cast-overflow -fno-sanitize-recover=all)
        list(APPEND ORVANEL_SANITIZER_LIBRARIES libubsan.so)
        list(APPEND ORVANEL_FOREIGN_OPTIONS -fno-sanitize=undefined)
    else()
        message(FATAL_ERROR "ORVANEL_SANITIZER has '${sanitizer}': address, thread and undefined are known")
    endif()
endforeach()
if(ORVANEL_FUZZ)
    set(sanitize -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined)
endif()
if(sanitize)
    add_compile_options(${sanitize} -fno-omit-frame-pointer)
    add_link_options(${sanitize})
endif()
if(ORVANEL_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()

add_library(orvanel_options INTERFACE)
if(NOT WIN32)
    # Thousands of small calls go from the module into the interpreter for one list of runs.
    target_compile_options(orvanel_options INTERFACE -fno-plt)
endif()
target_include_directories(orvanel_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
option(ORVANEL_WERROR "Warnings are errors" ON)
find_package(Threads REQUIRED)
if(MSVC)
    # Its warnings are not ours to keep at zero: nobody here sees them. Its floating point is strict about contraction.
    target_compile_options(orvanel_options INTERFACE /W3 /fp:precise)
    return()
endif()
target_compile_options(orvanel_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wold-style-cast -Wcast-qual
    -Wextra-semi -Wundef -Wvla -Wformat-security
    # Structures of the platform are value-initialised by naming their first member.
    -Wno-missing-field-initializers
    # Single-precision results are part of the contract: no fused multiply-add behind our back.
    -ffp-contract=off)
if(NOT WIN32)
    # There the system's own IUnknown has an accessible destructor, and every interface would be reported.
    target_compile_options(orvanel_options INTERFACE -Wnon-virtual-dtor)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # -Wrestrict: GCC 12 reports copies inside std::string that cannot happen.
    target_compile_options(orvanel_options INTERFACE -Wduplicated-cond -Wlogical-op -Wno-restrict)
endif()
if(ORVANEL_WERROR)
    target_compile_options(orvanel_options INTERFACE -Werror)
endif()
