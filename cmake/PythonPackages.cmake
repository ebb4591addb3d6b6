# SPDX-License-Identifier: MIT
# What lands in build/PRESET/python: extension modules and Python packages side by side, so that this one folder on
# PYTHONPATH is a working installation.

include_guard(GLOBAL)

set(ORVANEL_PYTHON_OUTPUT "${PROJECT_BINARY_DIR}/python")

# orvanel_add_python_module(NAME SOURCES file... LIBS target...): an extension module NAME.so, NAME.pyd on Windows.
function(orvanel_add_python_module name)
    cmake_parse_arguments(MODULE "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} MODULE ${MODULE_SOURCES})
    target_link_libraries(${name} PRIVATE orvanel_options ${MODULE_LIBS} Python27::Module)
    set_target_properties(${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${ORVANEL_PYTHON_OUTPUT}")
    if(WIN32)
        set_target_properties(${name} PROPERTIES SUFFIX ".pyd")
    endif()
endfunction()

# orvanel_add_python_package(NAME FOLDER): copies the Python files of FOLDER to the package NAME when one of them changed.
function(orvanel_add_python_package name folder)
    get_filename_component(folder "${folder}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE "${folder}" "${folder}/*.py" "${folder}/*.json")
    set(copies)
    foreach(file ${files})
        set(copy "${ORVANEL_PYTHON_OUTPUT}/${name}/${file}")
        add_custom_command(OUTPUT "${copy}" COMMAND "${CMAKE_COMMAND}" -E copy "${folder}/${file}" "${copy}" DEPENDS "${folder}/${file}"
            COMMENT "Copying ${name}/${file}" VERBATIM)
        list(APPEND copies "${copy}")
    endforeach()
    add_custom_target(${name}_package ALL DEPENDS ${copies})
endfunction()
