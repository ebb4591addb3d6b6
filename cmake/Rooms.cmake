# SPDX-License-Identifier: MIT
# A room is one folder of src/: a static library of its sources, and one test program of the *_test.cpp beside them.

add_library(orvanel_options INTERFACE)
target_include_directories(orvanel_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(orvanel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual -Werror
  # Single-precision results are part of the contract: no fused multiply-add behind our back.
  -ffp-contract=off)

find_package(Threads REQUIRED)

# orvanel_add_room(NAME [DEPENDS room...] [LIBS target...])
function(orvanel_add_room name)
  cmake_parse_arguments(ROOM "" "" "DEPENDS;LIBS;TEST_LIBS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  list(FILTER sources EXCLUDE REGEX "_test\\.cpp$")
  if(WIN32)
    file(GLOB platform_sources CONFIGURE_DEPENDS win32/*.cpp)
  else()
    file(GLOB platform_sources CONFIGURE_DEPENDS posix/*.cpp)
  endif()
  list(FILTER platform_sources EXCLUDE REGEX "_test\\.cpp$")
  add_library(orvanel_${name} STATIC ${sources} ${platform_sources})
  list(TRANSFORM ROOM_DEPENDS PREPEND orvanel_)
  target_link_libraries(orvanel_${name} PUBLIC orvanel_options ${ROOM_DEPENDS} ${ROOM_LIBS} Threads::Threads)
  file(GLOB test_sources CONFIGURE_DEPENDS *_test.cpp)
  if(BUILD_TESTING AND test_sources)
    orvanel_add_test(${name}_test SOURCES ${test_sources} LIBS orvanel_${name} ${ROOM_TEST_LIBS})
  endif()
endfunction()

# orvanel_add_test(NAME SOURCES file... LIBS target...): a GoogleTest program, one ctest entry.
function(orvanel_add_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_LIBS} GTest::gtest GTest::gmock GTest::gtest_main)
  add_test(NAME ${name} COMMAND ${name})
endfunction()

if(BUILD_TESTING AND NOT WIN32)
  find_package(GTest REQUIRED)
endif()
