# SPDX-License-Identifier: MIT
# A room is one folder of src/: a static library of its sources, and one test program of the *_test.cpp beside them.

include_guard(GLOBAL)

# orvanel_add_room(NAME [DEPENDS room...] [LIBS target...] [TEST_LIBS target...] [TEST_LOCKS name...])
# DEPENDS names other rooms. TEST_LIBS is what the room's test program needs beyond the room, TEST_LOCKS what it shares with
# other programs (ORVANEL_SHARED_NAMES).
function(orvanel_add_room name)
    cmake_parse_arguments(ROOM "" "" "DEPENDS;LIBS;TEST_LIBS;TEST_LOCKS" ${ARGN})
    if(WIN32)
        set(platform win32)
    else()
        set(platform posix)
    endif()
    file(GLOB sources CONFIGURE_DEPENDS *.cpp ${platform}/*.cpp)
    set(test_sources ${sources})
    list(FILTER sources EXCLUDE REGEX "_test\\.cpp$")
    list(FILTER test_sources INCLUDE REGEX "_test\\.cpp$")
    list(TRANSFORM ROOM_DEPENDS PREPEND orvanel_)
    if(sources)
        add_library(orvanel_${name} STATIC ${sources})
        target_link_libraries(orvanel_${name} PUBLIC orvanel_options ${ROOM_DEPENDS} ${ROOM_LIBS} Threads::Threads)
    else()
        add_library(orvanel_${name} INTERFACE)
        target_link_libraries(orvanel_${name} INTERFACE orvanel_options ${ROOM_DEPENDS} ${ROOM_LIBS} Threads::Threads)
    endif()
    if(BUILD_TESTING AND test_sources)
        orvanel_add_test(${name}_test SOURCES ${test_sources} LIBS orvanel_${name} ${ROOM_TEST_LIBS} LOCKS ${ROOM_TEST_LOCKS})
    endif()
endfunction()
