# SPDX-License-Identifier: MIT
# How tests are declared. Every test ends up in ctest; `ctest --test-dir build/release -R NAME` runs one.

include_guard(GLOBAL)

option(BUILD_TESTING "Build the tests" ON)
# Long enough for the slowest sanitizer, short enough that a deadlock shows as a failed test.
set(ORVANEL_TEST_TIMEOUT 300 CACHE STRING "Seconds after which a test counts as hung")

if(BUILD_TESTING)
    enable_testing()
    include("${CMAKE_CURRENT_LIST_DIR}/GoogleTestSource.cmake")
    include(GoogleTest)
    add_library(orvanel_test_options INTERFACE)
    target_link_libraries(orvanel_test_options INTERFACE orvanel_options GTest::gmock GTest::gtest_main Threads::Threads)
    if(NOT MSVC)
        # What a test calls is optimised in full; its own lines are compiled more often than they run long.
        target_compile_options(orvanel_test_options INTERFACE $<$<CONFIG:Release>:-O1>)
    endif()
    # Parsing GoogleTest's header takes longer than most of the tests that include it: once for all of a configuration, then.
    # The header counts for equal options only, so it is an executable's like the tests.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/test_header.cpp" CONTENT "")
        add_executable(orvanel_test_header EXCLUDE_FROM_ALL "${PROJECT_BINARY_DIR}/test_header.cpp")
        target_link_libraries(orvanel_test_header PRIVATE orvanel_test_options)
        target_precompile_headers(orvanel_test_header PRIVATE <gtest/gtest.h>)
    endif()
endif()

# What a program with this configuration's sanitizer reads. Files are named by full path: tests run in many folders.
set(ORVANEL_SANITIZER_ENVIRONMENT
    "ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1"
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/sanitizers/leak.supp:print_suppressions=0"
    "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/sanitizers/race.supp:halt_on_error=1:second_deadlock_stack=1"
    "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")

# The interpreter is not instrumented, so a sanitizer's run time has to be in the process before it.
function(_orvanel_sanitizer_preload result)
    set(preload)
    if(ORVANEL_SANITIZER)
        foreach(library ${ORVANEL_SANITIZER_LIBRARIES} libstdc++.so)
            execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${library}" OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
            get_filename_component(path "${path}" REALPATH)
            list(APPEND preload "${path}")
        endforeach()
    endif()
    list(JOIN preload ":" preload)
    set(${result} "${preload}" PARENT_SCOPE)
endfunction()

# orvanel_not_on_windows(NAME REASON): says of a test why it does not run there. ./test prints the list.
function(orvanel_not_on_windows name reason)
    set_property(GLOBAL APPEND_STRING PROPERTY ORVANEL_NOT_ON_WINDOWS "${name}: ${reason}\n")
endfunction()

function(orvanel_write_not_on_windows)
    get_property(list GLOBAL PROPERTY ORVANEL_NOT_ON_WINDOWS)
    file(WRITE "${PROJECT_BINARY_DIR}/not-on-windows.txt" "${list}")
endfunction()

# What all processes of a Windows session share, and what the tests do to it. Two tests that name the same one in LOCKS never
# run at once. Elsewhere each of these is a process's own, and nothing is locked.
set(ORVANEL_SHARED_NAMES
    update_event # PyMapWrapper_UpdateEvt, which every texture map sets and resets
    component    # the registration of the drawing component, which comes and goes
    event_trace  # the log's provider
    registry     # the log's switches, below a key of the user's
    dump_file    # the one path that the fill's debugging picture goes to
    display)     # Direct3D devices, windows that are found by enumeration

# orvanel_lock_names(TEST name...): of ORVANEL_SHARED_NAMES, those that TEST uses.
function(orvanel_lock_names test)
    foreach(name IN LISTS ARGN)
        if(NOT name IN_LIST ORVANEL_SHARED_NAMES)
            message(FATAL_ERROR "${test}: there is no shared name '${name}', only ${ORVANEL_SHARED_NAMES}")
        endif()
    endforeach()
    if(WIN32 AND TEST ${test})
        set_property(TEST ${test} APPEND PROPERTY RESOURCE_LOCK ${ARGN})
    endif()
endfunction()

# orvanel_add_test(NAME SOURCES file... LIBS target... [LOCKS name...])
# A GoogleTest program; each of its tests is one ctest entry NAME.Suite.Test. A program that links Python27::Embed gets PYTHONHOME.
# LOCKS: see ORVANEL_SHARED_NAMES.
function(orvanel_add_test name)
    cmake_parse_arguments(TEST "" "" "SOURCES;LIBS;LOCKS" ${ARGN})
    if(NOT BUILD_TESTING)
        return()
    endif()
    if("Python27::Embed" IN_LIST TEST_LIBS AND NOT TARGET Python27::Embed)
        message(STATUS "${name} is left out: this Python 2.7 has no library to embed")
        return()
    endif()
    add_executable(${name} ${TEST_SOURCES})
    target_link_libraries(${name} PRIVATE orvanel_test_options ${TEST_LIBS})
    if(TARGET orvanel_test_header)
        target_precompile_headers(${name} REUSE_FROM orvanel_test_header)
        # -fpch-preprocess: so that ccache can tell by which header an object was made. The other two: behind a precompiled
        # header GCC 12 reports copies inside std::string that cannot happen; the address sanitizer sees those that do.
        target_compile_options(${name} PRIVATE -fpch-preprocess -Wno-array-bounds -Wno-stringop-overflow)
    endif()
    # gtest_discover_tests loses a list of environment variables; a runner in front of the program does not.
    set(environment ${ORVANEL_SANITIZER_ENVIRONMENT})
    if("Python27::Embed" IN_LIST TEST_LIBS)
        list(APPEND environment "PYTHONHOME=${PYTHON27_HOME}" "PYTHONNOUSERSITE=1")
        if(PYTHON27_LIBRARY_PATH)
            list(APPEND environment "LD_LIBRARY_PATH=${PYTHON27_LIBRARY_PATH}")
        endif()
    endif()
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "env;${environment};${CMAKE_CROSSCOMPILING_EMULATOR}")
    if(CMAKE_CROSSCOMPILING)
        # Starting a program in the emulator takes longer than most of its cases: one entry for all of them.
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES TIMEOUT ${ORVANEL_TEST_TIMEOUT})
        orvanel_lock_names(${name} ${TEST_LOCKS})
        return()
    endif()
    gtest_discover_tests(${name}
        TEST_PREFIX "${name}."
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${ORVANEL_TEST_TIMEOUT})
endfunction()

# What a Python test reads, everywhere; `root` is what the tests' system puts in front of a path of this machine.
function(_orvanel_python_environment result root)
    set(${result}
        "PYTHONNOUSERSITE=1"
        "ORVANEL_SOURCE_DIR=${root}${PROJECT_SOURCE_DIR}"
        "ORVANEL_BUILD_DIR=${root}${PROJECT_BINARY_DIR}" PARENT_SCOPE)
endfunction()

# orvanel_add_python_test(NAME FILE [ENVIRONMENT name=value...] [LABELS label...] [LOCKS name...] [NOT_ON_WINDOWS reason])
# Runs the unittest cases of FILE under Python 2.7 with the built modules and packages on the path; on Windows too, under the
# interpreter for Windows, unless there is a reason against it.
function(orvanel_add_python_test name file)
    cmake_parse_arguments(TEST "" "NOT_ON_WINDOWS" "ENVIRONMENT;LABELS;LOCKS" ${ARGN})
    if(NOT BUILD_TESTING)
        return()
    endif()
    if(WIN32 AND TEST_NOT_ON_WINDOWS)
        orvanel_not_on_windows(${name} "${TEST_NOT_ON_WINDOWS}")
        return()
    endif()
    get_filename_component(file "${file}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    get_filename_component(folder "${file}" DIRECTORY)
    get_filename_component(module "${file}" NAME_WE)
    if(WIN32)
        # Wine's drive Z: is the root of this machine. The runner rewrites PYTHONPATH.
        _orvanel_python_environment(environment "Z:")
        list(APPEND environment "PYTHONPATH=${ORVANEL_PYTHON_OUTPUT}:${folder}:${PROJECT_SOURCE_DIR}/tests/windows/python:${PROJECT_BINARY_DIR}/tests/windows" ${TEST_ENVIRONMENT})
        add_test(NAME ${name}
            COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} "${ORVANEL_PYTHON27_WINDOWS_DIR}/python.exe" -B -m unittest -v ${module}
            WORKING_DIRECTORY "${PROJECT_BINARY_DIR}")
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED installation)
    else()
        _orvanel_sanitizer_preload(preload)
        _orvanel_python_environment(environment "")
        list(APPEND environment ${ORVANEL_SANITIZER_ENVIRONMENT}
            "PYTHONPATH=${ORVANEL_PYTHON_OUTPUT}:${folder}:${PYTHON27_SITE}"
            "LD_LIBRARY_PATH=${PYTHON27_LIBRARY_PATH}"
            ${TEST_ENVIRONMENT})
        if(preload)
            # The interpreter frees little when it ends; leaks of ours are looked for by counting references and by the C++ tests.
            list(TRANSFORM environment REPLACE "^ASAN_OPTIONS=" "ASAN_OPTIONS=detect_leaks=0:")
            list(APPEND environment "LD_PRELOAD=${preload}")
        endif()
        add_test(NAME ${name} COMMAND "${PYTHON27_RUN_EXECUTABLE}" -B -m unittest -v ${module} WORKING_DIRECTORY "${PROJECT_BINARY_DIR}")
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ORVANEL_TEST_TIMEOUT}
        LABELS "python;${TEST_LABELS}"
        ENVIRONMENT "${environment}"
        # unittest calls a file without tests a success.
        FAIL_REGULAR_EXPRESSION "Ran 0 tests")
    orvanel_lock_names(${name} ${TEST_LOCKS})
endfunction()
