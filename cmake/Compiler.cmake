# SPDX-License-Identifier: MIT
# Everything that decides how a source of ours is compiled: warnings, floating point, sanitizers, coverage, compiler cache.
# Sources of others (GoogleTest) get the sanitizers too, but not the warnings.

include_guard(GLOBAL)

set(ORVANEL_SANITIZER "" CACHE STRING "Empty, address, thread or undefined")
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
    set(launcher env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 "${ORVANEL_CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

# Debug information and __FILE__ name sources relative to the repository, so equal sources make equal objects.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")

if(ORVANEL_SANITIZER STREQUAL "address")
    set(sanitize -fsanitize=address -fsanitize-address-use-after-scope)
elseif(ORVANEL_SANITIZER STREQUAL "thread")
    set(sanitize -fsanitize=thread)
elseif(ORVANEL_SANITIZER STREQUAL "undefined")
    # A report ends the program: a test that prints one and passes would be no test.
    # Division of a float by zero is left out: IEEE 754 defines it, and a placement without size needs its result.
    set(sanitize -fsanitize=undefined -fsanitize=float-cast-overflow -fno-sanitize-recover=all)
elseif(ORVANEL_SANITIZER)
    message(FATAL_ERROR "ORVANEL_SANITIZER is '${ORVANEL_SANITIZER}': address, thread and undefined are known")
endif()
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
option(ORVANEL_WERROR "Warnings are errors" ON)
if(ORVANEL_WERROR)
    target_compile_options(orvanel_options INTERFACE -Werror)
endif()

find_package(Threads REQUIRED)
