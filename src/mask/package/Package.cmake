# SPDX-License-Identifier: MIT
# The mask library as a package of its own: `cmake --install BUILD --prefix PLACE --component mask`.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/OrvanelMask")

install(FILES mask_encoder.h mask_handler.h flatten.h pod_buffer.h
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orvanel/mask" COMPONENT mask EXCLUDE_FROM_ALL)
install(FILES "${PROJECT_SOURCE_DIR}/src/overlay/types/keyframe_mask_info.h" "${PROJECT_SOURCE_DIR}/src/overlay/types/outline_points.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orvanel/overlay/types" COMPONENT mask EXCLUDE_FROM_ALL)
install(FILES "${PROJECT_SOURCE_DIR}/src/platform/win_types.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orvanel/platform" COMPONENT mask EXCLUDE_FROM_ALL)
# The three archives; targets are not exported as they are, because ours carry warnings and source paths.
foreach(room mask support platform)
    install(FILES "$<TARGET_FILE:orvanel_${room}>" DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT mask EXCLUDE_FROM_ALL)
endforeach()
configure_package_config_file(package/OrvanelMaskConfig.cmake.in "${CMAKE_CURRENT_BINARY_DIR}/OrvanelMaskConfig.cmake"
    INSTALL_DESTINATION "${package_dir}" PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/OrvanelMaskConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/OrvanelMaskConfig.cmake" "${CMAKE_CURRENT_BINARY_DIR}/OrvanelMaskConfigVersion.cmake"
    DESTINATION "${package_dir}" COMPONENT mask EXCLUDE_FROM_ALL)

# Installs the package and builds the example of docs/mask.md with it, as a stranger would. A sanitizer's archives need its
# run time, which a stranger does not have.
if(BUILD_TESTING AND NOT CMAKE_CROSSCOMPILING AND NOT ORVANEL_SANITIZER AND NOT ORVANEL_COVERAGE)
    add_test(NAME mask_package
        COMMAND "${CMAKE_COMMAND}" "-DBUILD=${PROJECT_BINARY_DIR}" "-DSOURCE=${PROJECT_SOURCE_DIR}"
                "-DCXX=${CMAKE_CXX_COMPILER}" "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/package_test"
                -P "${CMAKE_CURRENT_SOURCE_DIR}/package/package_test.cmake")
    set_tests_properties(mask_package PROPERTIES TIMEOUT ${ORVANEL_TEST_TIMEOUT})
endif()
if(CMAKE_CROSSCOMPILING)
    orvanel_not_on_windows(mask_package "builds a program against the installed library, as somebody on that machine would")
endif()
