# SPDX-License-Identifier: MIT
# GoogleTest built from Debian's source package (googletest), once per configuration: a sanitizer wants the framework
# compiled with it too, and the cross build has no library of it at all.

set(ORVANEL_GOOGLETEST_DIR /usr/src/googletest CACHE PATH "Source folder of GoogleTest")
if(NOT EXISTS "${ORVANEL_GOOGLETEST_DIR}/CMakeLists.txt")
    message(FATAL_ERROR "GoogleTest's sources are missing: install package googletest (scripts/setup/packages.sh build)")
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
add_subdirectory("${ORVANEL_GOOGLETEST_DIR}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
foreach(library gtest gtest_main gmock gmock_main)
    target_compile_options(${library} PRIVATE ${ORVANEL_FOREIGN_OPTIONS})
    if(NOT TARGET GTest::${library})
        add_library(GTest::${library} ALIAS ${library})
    endif()
endforeach()
